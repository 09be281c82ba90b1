#pragma once

#include <string>

/// Makes a socket that nobody listens at; whether that could be done here.
bool makeSocket(const std::string& path);
