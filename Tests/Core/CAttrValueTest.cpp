#include "Core/CAttrValue.h"

#include <gtest/gtest.h>

#include <limits>

namespace tsm {
namespace {

TEST(AttributeText, IsClassifiedByItsForm)
{
    struct CRow {
        const char* text;
        EAttrType type;
    };
    for (const CRow& row : {CRow{"12", EAttrType::Integer}, CRow{"-7", EAttrType::Integer},
                            CRow{"012", EAttrType::String}, CRow{"0x10", EAttrType::String},
                            CRow{"+3", EAttrType::String}, CRow{"1.0", EAttrType::String},
                            CRow{" 1", EAttrType::String}, CRow{"-0", EAttrType::String},
                            CRow{"2147483647", EAttrType::Integer},
                            CRow{"2147483648", EAttrType::String}, CRow{"true", EAttrType::Boolean},
                            CRow{"True", EAttrType::String}, CRow{"", EAttrType::None}}) {
        SCOPED_TRACE(row.text);
        const CAttrValue value{CString(row.text)};
        EXPECT_EQ(value.getType(), row.type);
        EXPECT_EQ(value.asString(), row.text);
    }
}

TEST(AttributeValue, ConvertsByTheTable)
{
    CAttrValue value{CString("1.0")};
    EXPECT_EQ(value.asInt(), 1);
    EXPECT_EQ(value.asDouble(), 1.0);
    EXPECT_EQ(value.asString(), "1.0");

    value.setDouble(1.5);
    EXPECT_EQ(value.asString(), "1.5000");
    EXPECT_EQ(value.asInt(), 2);
    value.setDouble(-2.5);
    EXPECT_EQ(value.asInt(), -3); // half away from zero
    value.setDouble(-0.00004);
    EXPECT_EQ(value.asString(), "0.0000");
    value.setDouble(1e300);
    EXPECT_EQ(value.asInt(), std::numeric_limits<std::int32_t>::max());

    value.setBool(true);
    EXPECT_EQ(value.asInt(), 1);
    EXPECT_EQ(value.asString(), "true");
    double real = 7.0;
    EXPECT_FALSE(value.toDouble(real));
    EXPECT_EQ(real, 7.0);

    value.setText("yes");
    bool flag = true;
    EXPECT_FALSE(value.toBool(flag));
    EXPECT_FALSE(value.asBool());
    value.setInt(-1);
    EXPECT_TRUE(value.asBool());
}

TEST(AttributeValue, DropsItsOldConversionsWithANewValue)
{
    CAttrValue value{CString("7")};
    EXPECT_EQ(value.asString(), "7");
    EXPECT_EQ(value.asDouble(), 7.0);
    value.setText("false");
    EXPECT_EQ(value.asString(), "false");
    EXPECT_EQ(value.asInt(), 0);
    int object = 0;
    value.setPointer(&object);
    EXPECT_EQ(value.asPointer(), &object);
    EXPECT_TRUE(value.asString().isEmpty());
    value.setText("");
    EXPECT_EQ(value.asPointer(), nullptr);
}

} // namespace
} // namespace tsm
