// The DOM layer, linked into the test: what the exports cannot show by themselves.
#include <gtest/gtest.h>

#include "support/Installation.h"
#include "xml/Documents.h"
#include "xml/Variant.h"
#include "ZOTDamClient.h"

namespace ZOTDam::Test {

class ProfileTest : public testing::Test {
protected:
    Installation installation;
    ComScope com;
};

TEST_F(ProfileTest, TheBaseCatalogueFindsNothingUnderANullParent) {
    CXmlZOTBase base;
    EXPECT_FALSE(base.GetChildNode(nullptr, L"Functions"));
}

TEST(VariantTest, TextWithoutDigitsBecomesZero) {
    _variant_t number{7L};
    FillFromText(number, _bstr_t{L"abc"});
    EXPECT_EQ(V_I4(&number), 0);
}

}  // namespace ZOTDam::Test
