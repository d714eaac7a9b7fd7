#include "adapters/defaults/IniDocument.h"

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <string>

namespace dunmora::test {
namespace {

using Values = IniDocument::Values;
using namespace std::string_literals;

/// The text after "mine" has been set.
std::string withMine(std::string_view text)
{
    auto document = IniDocument::parsed(text).value();
    EXPECT_TRUE(document.set("mine", true));
    return document.text();
}

TEST(IniDocument, IsEmptyWhenTheTextIs)
{
    const auto document = IniDocument::parsed("");

    ASSERT_TRUE(document.has_value());
    EXPECT_EQ(document->values(), Values());
    EXPECT_EQ(document->text(), "");
}

TEST(IniDocument, ReadsTheKeysBeforeTheFirstSectionAndUnderGeneral)
{
    const auto document = IniDocument::parsed("a=true\n[Other]\nb=true\n[general]\nc=true\n"
                                              "[%General]\nd=true\n[]\ne=true\n");

    EXPECT_EQ(document.value().values(), (Values{{"a", true}, {"c", true}}));
}

TEST(IniDocument, UsesTheLastOfTwoLinesWithTheSameKey)
{
    auto document = IniDocument::parsed("a=true\na=false\n").value();
    EXPECT_EQ(document.values(), (Values{{"a", false}}));

    document.set("a", true);

    EXPECT_EQ(document.values(), (Values{{"a", true}}));
    EXPECT_EQ(document.text(), "a=true\na=true\n");
}

TEST(IniDocument, ToleratesBlanksAByteOrderMarkAndAMissingLastLineEnd)
{
    const auto document = IniDocument::parsed("\xEF\xBB\xBF  a =\ttrue \r\n\r\n\tb= 1");

    EXPECT_EQ(document.value().values(), (Values{{"a", true}, {"b", true}}));
}

TEST(IniDocument, KeepsEveryByteOfOtherLines)
{
    const auto text = "; a comment\r\n\n# another\nk\xE9y = \"a;b\" ; c\n [Other] ; x\nfilterHome=@"
                      "Variant(\\0)\n=1\n"s;

    auto document = IniDocument::parsed(text).value();
    EXPECT_EQ(document.text(), text);
    document.set("mine", true);

    auto changed = document.text();
    EXPECT_EQ(changed.erase(changed.find("mine=true\n"), 10), text);
}

TEST(IniDocument, KeepsTheByteOrderMark)
{
    const auto mark = "\xEF\xBB\xBF"s;

    EXPECT_EQ(IniDocument::parsed(mark).value().text(), mark);
    EXPECT_EQ(withMine(mark), mark + "[General]\nmine=true\n");
    EXPECT_EQ(withMine(mark + "mine=false\n"), mark + "mine=true\n");
    EXPECT_EQ(withMine(mark + "[Other]\nb=1\n"), mark + "mine=true\n[Other]\nb=1\n");
}

TEST(IniDocument, ChangesOnlyTheLineOfTheKey)
{
    auto document = IniDocument::parsed("a=1 ; one\nb = 2\nc=3").value();

    EXPECT_TRUE(document.set("b", false));

    EXPECT_EQ(document.text(), "a=1 ; one\nb=false\nc=3");
}

TEST(IniDocument, LeavesALineThatHasTheValueAlready)
{
    auto document = IniDocument::parsed("a = true ; as I like it\nb=1\n").value();

    EXPECT_FALSE(document.set("a", true));
    EXPECT_EQ(document.text(), "a = true ; as I like it\nb=1\n");
}

TEST(IniDocument, ReplacesANumberByAWord)
{
    auto document = IniDocument::parsed("a=1\n").value();

    EXPECT_TRUE(document.set("a", true));

    EXPECT_EQ(document.text(), "a=true\n");
}

TEST(IniDocument, AddsANewKeyAfterTheLastKeyOfOurSection)
{
    EXPECT_EQ(withMine(""), "[General]\nmine=true\n");
    EXPECT_EQ(withMine("a=1"), "a=1\nmine=true\n");
    EXPECT_EQ(withMine("a=1\n\n[Other]\nb=1\n"), "a=1\nmine=true\n\n[Other]\nb=1\n");
    EXPECT_EQ(withMine("[Other]\nb=1\n"), "mine=true\n[Other]\nb=1\n");
    EXPECT_EQ(withMine("[Other]\nb=1\n\n[General]\n"), "[Other]\nb=1\n\n[General]\nmine=true\n");
    EXPECT_EQ(withMine("[General]\na=1\n[Other]"), "[General]\na=1\nmine=true\n[Other]");
}

TEST(IniDocument, ReadsTheTextsOfASection)
{
    const auto document = IniDocument::parsed("size=1\n[MainWindow]\nsize=800 600 ; wide\n"
                                              "place = \"1 2\"\n[Other]\nsize=2\n[mainwindow]\n"
                                              "columns=a:1\nplace=3 4\n")
                              .value();

    EXPECT_EQ(document.textsIn("MainWindow"),
              (IniDocument::Texts{{"size", "800 600"}, {"place", "3 4"}, {"columns", "a:1"}}));
    EXPECT_EQ(document.textsIn("Missing"), IniDocument::Texts());
    EXPECT_EQ(document.values(), (Values{{"size", true}}));
}

TEST(IniDocument, ChangesOnlyTheLineOfATextInItsSection)
{
    const auto text = "size=1\n[MainWindow]\nsize=800 600\n[Other]\nsize=2\n"s;
    auto document = IniDocument::parsed(text).value();

    EXPECT_FALSE(document.setText("MainWindow", "size", "800 600"));
    EXPECT_EQ(document.text(), text);
    EXPECT_TRUE(document.setText("MainWindow", "size", "640 480"));

    EXPECT_EQ(document.text(), "size=1\n[MainWindow]\nsize=640 480\n[Other]\nsize=2\n");
}

/// The text after "size" has been set in the section "MainWindow".
std::string withSize(std::string_view text)
{
    auto document = IniDocument::parsed(text).value();
    EXPECT_TRUE(document.setText("MainWindow", "size", "800 600"));
    EXPECT_EQ(document.textsIn("MainWindow").at("size"), "800 600");
    return document.text();
}

TEST(IniDocument, AddsANewTextToItsSection)
{
    EXPECT_EQ(withSize(""), "[General]\n\n[MainWindow]\nsize=800 600\n");
    EXPECT_EQ(withSize("a=1"), "a=1\n\n[MainWindow]\nsize=800 600\n");
    EXPECT_EQ(withSize("[Other]\nsize=1\n"), "[Other]\nsize=1\n\n[MainWindow]\nsize=800 600\n");
    EXPECT_EQ(withSize("a=1\n\n"), "a=1\n\n[MainWindow]\nsize=800 600\n");
    EXPECT_EQ(withSize("[MAINWINDOW]\nplace=1 2\n\n[Other]\nb=1\n"),
              "[MAINWINDOW]\nplace=1 2\nsize=800 600\n\n[Other]\nb=1\n");
    EXPECT_EQ(withSize("[MainWindow]"), "[MainWindow]\nsize=800 600\n");
}

TEST(IniDocument, KeepsABooleanValueApartFromTheSections)
{
    auto document = IniDocument::parsed("[MainWindow]\nmine=no\n").value();

    EXPECT_TRUE(document.set("mine", true));

    EXPECT_EQ(document.text(), "mine=true\n[MainWindow]\nmine=no\n");
    EXPECT_EQ(document.values(), (Values{{"mine", true}}));
    EXPECT_EQ(withMine("[General]\n\n[MainWindow]\nsize=1 2\n"),
              "[General]\nmine=true\n\n[MainWindow]\nsize=1 2\n");
}

/// The most memory that the process has had, in bytes.
std::size_t peakMemory()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<std::size_t>(usage.ru_maxrss) * 1024;
}

TEST(IniDocument, HoldsALongNameOfASectionOnceForAllItsLines)
{
    constexpr std::size_t kLines = 2'000;
    const auto text = "[" + std::string(100'000, 'n') + "]\n" + std::string(kLines, '\n');
    const auto before = peakMemory();

    const auto document = IniDocument::parsed(text).value();

    EXPECT_EQ(document.text(), text);
    // With the name in every line it would take 200 MB.
    EXPECT_LT(peakMemory() - before, 50'000'000U);
}

class IniDocumentTruthTest : public testing::TestWithParam<const char*> {
protected:
    static Values read() { return IniDocument::parsed("a="s + GetParam() + "\n").value().values(); }
};

using IniDocumentTrueTest = IniDocumentTruthTest;
TEST_P(IniDocumentTrueTest, IsTrue)
{
    EXPECT_EQ(read(), (Values{{"a", true}}));
}
INSTANTIATE_TEST_SUITE_P(Values, IniDocumentTrueTest,
                         testing::Values("true", "TRUE", "yes", "Yes", "1", "2", "-1", "+1", "0.5",
                                         ".5", "1e3", "1e999", "1e-999", "007", "\"true\"",
                                         " \"1\" ", "true ; comment", "1;"));

using IniDocumentFalseTest = IniDocumentTruthTest;
TEST_P(IniDocumentFalseTest, IsFalse)
{
    EXPECT_EQ(read(), (Values{{"a", false}}));
}
INSTANTIATE_TEST_SUITE_P(Values, IniDocumentFalseTest,
                         testing::Values("", "\"\"", "\"", "false", "no", "0", "0.0", "-0", "+0",
                                         "00", "0e5", "on", "truely", "1x", "1 2", "1, 2", "0x10",
                                         "inf", "nan", "+", "+-1", "; true", "@Variant(\\0)"));

class IniDocumentDamageTest : public testing::TestWithParam<std::string> {};
TEST_P(IniDocumentDamageTest, IsNotParsed)
{
    EXPECT_FALSE(IniDocument::parsed(GetParam()).has_value());
}
INSTANTIATE_TEST_SUITE_P(Texts, IniDocumentDamageTest,
                         testing::Values("a=1\njunk\n", "a=1\n[Other\n", "a=1\rb=1\n", "a=\0\n"s,
                                         "a=1\n\0\0\0\0"s,
                                         "\x7F"
                                         "ELF=\2\1\1\n",
                                         "\xFF\xFE"
                                         "a\0=\0001\0"s,
                                         "{\"filterHome\": true}"));

}  // namespace
}  // namespace dunmora::test
