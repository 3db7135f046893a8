#include "base/xml_text.h"

#include <gtest/gtest.h>

namespace zelmo {
namespace {

TEST(XmlText, HasNoMarkupAndNoControlCharacters) {
    EXPECT_EQ(XmlText("<a & \"b\">'"), "&lt;a &amp; &quot;b&quot;&gt;&#39;");
    EXPECT_EQ(XmlText("a\x01\tb"), "a  b");
}

}  // namespace
}  // namespace zelmo
