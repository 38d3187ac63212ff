#include "engine/text/line_break.h"

#include <gtest/gtest.h>

namespace velora::engine {
namespace {

/// The text with a tilde at each place where a line may end, but its end.
std::string with_ends(LineBreaker& breaker, const std::string& text)
{
    std::string marked;
    breaker.start(text);
    for (uint32_t at = 0; at < text.size();) {
        const uint32_t next = breaker.next();
        if (next <= at) return "stands still";
        if (at > 0) marked += '~';
        marked += text.substr(at, next - at);
        at = next;
    }
    return marked;
}

// What the Java runtime's line iterator answers, which designers' tools ask.
TEST(LineBreak, LinesEndWhereDesignersToolsEndThem)
{
    LineBreaker breaker;
    for (const std::string expected : {
             "Valve, ~brass ~3/4 ~(DN ~20) ~- ~25 ~pcs.",
             "Net ~1,250.00 ~USD ~10%~off",
             "a.~b,~c:~d;~e!~f?~g%~h)~i]~j}~k",
             "12.5~cm ~1,~a ~.~5 ~v1.~2.3 ~3.~b ~7.8.",
             "due ~2026-~01-~31 ~well-~known ~a--~b ~x ~-~y ~-5 ~-5.25~m ~-~a",
             "f~(x) ~a~[1] ~say\"~so\"~now ~\"quoted\" ~(\"both\") ~«à» ~“b”~c",
             "O'Neill ~& ~Sons ~US$5 ~-$5 ~5$ ~a-$5 ~cost~€5 ~5~€ ~£3",
             "and/or ~C:~\\temp\\x ~a|b ~a…b ~a–~b ~a—~b ~a_b ~a@b.~com ~#1 ~*x*",
             "a\u00A0b ~e\u0301\u0301a ~f-~(1) ~20\u00A0°~C ~5°~C ~http:~//x.~org/a-~b?~c=d&e ~g()",
             "漢~字、~か~な。ッ~x ~한~국~어 ~αβγ.~δ ~где-~то",
         }) {
        std::string text = expected;
        std::erase(text, '~');
        EXPECT_EQ(with_ends(breaker, text), expected);
    }
}

TEST(LineBreak, WordsOfScriptsWithoutBlanksAreToldApartByADictionary)
{
    LineBreaker breaker;
    EXPECT_EQ(with_ends(breaker, "ภาษาไทย 12.5"), "ภาษา~ไทย ~12.5");
    EXPECT_EQ(with_ends(breaker, "a.b"), "a.~b") << "the next text goes by the rules again";
}

}  // namespace
}  // namespace velora::engine
