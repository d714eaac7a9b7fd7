#include "programs/dunmora-cli/Charset.h"

#include "programs/dunmora-cli/EncodedStream.h"

#include <gtest/gtest.h>

#include <ostream>
#include <sstream>

namespace dunmora::test {
namespace {

TEST(Charset, LeavesUtf8AsItIs)
{
    EXPECT_EQ(Charset().encoded("Zoë “王” 😀"), "Zoë “王” 😀");
    EXPECT_EQ(Charset("UTF-8").encoded("Zoë “王” 😀"), "Zoë “王” 😀");
}

TEST(Charset, ReplacesWhatItCannotShow)
{
    // The locale "C" has this one.
    const Charset ascii("ANSI_X3.4-1968");

    EXPECT_EQ(ascii.encoded("Ann\n\x1b[1m"), "Ann\n\x1b[1m");
    EXPECT_EQ(ascii.encoded("Zoë"), "Zo?");
    EXPECT_EQ(ascii.encoded("王小"), "????") << "as wide as before";
    EXPECT_EQ(ascii.encoded("Zoe\u0308"), "Zoe?");
}

TEST(Charset, KeepsQuotationMarksAndCutsReadable)
{
    EXPECT_EQ(Charset("ANSI_X3.4-1968").encoded("“a.vcf” …55"), "\"a.vcf\" ~55");
}

TEST(Charset, EncodesWhatItHas)
{
    const Charset latin("ISO-8859-1");

    EXPECT_EQ(latin.encoded("Zoë Żuraw"), "Zo\xEB ?uraw");
    EXPECT_EQ(latin.encoded("“Zoë”"), "\"Zo\xEB\"");
    EXPECT_EQ(Charset("WINDOWS-1252").encoded("“Zoë”"), "\x93Zo\xEB\x94");
    EXPECT_EQ(Charset("EUC-JP").encoded("佐"), "\xBA\xB4");
}

TEST(Charset, TakesAnUnknownOneForAscii)
{
    EXPECT_EQ(Charset("no such charset").encoded("Zoë"), "Zo?");
    EXPECT_EQ(Charset("").encoded("A"), "A");
}

TEST(EncodedStream, EncodesEverythingThatIsWritten)
{
    std::ostringstream target;
    EncodedStream buffer(target, Charset("ISO-8859-1"));
    std::ostream out(&buffer);

    out << "“Zoë”" << ' ' << 7 << std::string("王") << '\n' << std::flush;

    EXPECT_EQ(target.str(), "\"Zo\xEB\" 7??\n");
    target.setstate(std::ios::badbit);
    out << "x";
    EXPECT_FALSE(out);
}

}  // namespace
}  // namespace dunmora::test
