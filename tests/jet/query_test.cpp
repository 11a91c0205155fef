#include "platform/jet/database_file.h"

#include <gtest/gtest.h>

#include "platform/failure.h"
#include "support/failure_of.h"

namespace platform::jet {
namespace {

TEST(Query, IsTheOneThatIsUnderstood)
{
    const Query query = ParseQuery("select *\n FROM  Trans_2 Order By REF");
    EXPECT_EQ(query.table, "Trans_2");
    EXPECT_EQ(query.orderColumn, "REF");
    for (const char* text : {"", "SELECT * FROM trans", "SELECT ref FROM trans ORDER BY ref",
                             "SELECT * FROM trans ORDER BY ref DESC", "SELECT * FROM [trans] ORDER BY ref",
                             "DELETE * FROM trans ORDER BY ref"})
        EXPECT_EQ(FailureOf([&] { return ParseQuery(text); }), failure::kInvalidCall) << text;
}

}  // namespace
}  // namespace platform::jet
