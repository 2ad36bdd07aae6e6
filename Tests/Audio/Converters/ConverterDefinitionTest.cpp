#include "Tests/Support/CParamTree.h"

namespace tsm {

namespace {

class AConverterDefinition : public AParamTree {
protected:
    CError* build(const char* tag, const CTestAttrs& attrs)
    {
        CAudioParamConverter* made = nullptr;
        return create(made, *converters, tag, "x", attrs);
    }
};

} // namespace

TEST_F(AConverterDefinition, RefusesBadAttributes)
{
    struct CRow {
        const char* tag;
        CTestAttrs attrs;
        const char* message;
    };
    for (const CRow& row : {
             CRow{"audio:cvt-gain",
                  {{"scale-power", "0.0"}, {"scale-threshold", "-1.0"}},
                  "Invalid 'scale-power' attribute value 0.0 specified."},
             CRow{"audio:cvt-freq",
                  {{"scale-power", "1.0"}, {"scale-threshold", "1.5"}},
                  "Invalid 'scale-threshold' attribute value 1.5 specified."},
             CRow{"audio:cvt-gain",
                  {{"scale-power", "1"}, {"scale-threshold", "-1"}, {"decimals", "-1"}},
                  "Invalid 'decimals' attribute value -1 specified."},
             CRow{"audio:cvt-real", {{"decimals", "-2"}}, "Invalid decimals -2 specified."},
             CRow{"audio:cvt-time", {{"scale", "-0.5"}}, "Invalid scale -0.5 specified."},
         }) {
        SCOPED_TRACE(row.message);
        EXPECT_FAILS_WITH(build(row.tag, row.attrs), row.message);
    }
}

} // namespace tsm
