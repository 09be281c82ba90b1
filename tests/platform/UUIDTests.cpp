#include "Platform/UUID.h"
TEST(X,x){EXPECT_EQ(quarn::UUID::make().size(),36u);}
