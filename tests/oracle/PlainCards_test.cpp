#include "adapters/eds/PlainCard.h"

#include <gtest/gtest.h>

#include <libebook-contacts/libebook-contacts.h>

#include <cstddef>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora::test {
namespace {

struct Unreferenced {
    void operator()(EContact* contact) const { g_object_unref(contact); }
};

using Pieces = std::vector<std::string_view>;

/// Writes cards in which a UID, a list or the end of a line may be mistaken.
class CardWriter final {
public:
    std::string next()
    {
        std::string card = "BEGIN:VCARD\r\n";
        for (auto lines = random_() % 6; lines > 0; --lines) {
            addLine(card);
        }
        card += random_() % 8 == 0 ? "" : "UID:u-1\r\n";
        for (auto lines = random_() % 6; lines > 0; --lines) {
            addLine(card);
        }
        return card + "END:VCARD";
    }

private:
    void addLine(std::string& card)
    {
        add(card, {"NOTE", "item1.TEL", "TEL", "PHOTO", "X-EVOLUTION-FILE-AS", "N"});
        add(card, {"", "", ";TYPE=HOME", ";TYPE=HOME,VOICE;X-A=1", ";ENCODING=b",
                   ";X-E164=5,\"+1\";TYPE=HOME", ";TYPE=\"X-B\"", ";PREF"});
        add(card, {":"});
        add(card, {"one", "", "a b", "UID:u-2", "QUJD=", "a;b,c", "\u00E4\\n\\,b", "a\r\n b"});
        add(card, {"\r\n"});
    }

    /// Mostly one of the pieces, sometimes something else, or more.
    void add(std::string& card, const Pieces& usual)
    {
        static const Pieces kOdd{"UID",      "uid",
                                 ":",        "\r\n",
                                 "\n",       "\r",
                                 "\r\n ",    "\n\t",
                                 "\\",       "\\n",
                                 "\"",       "=",
                                 ";",        ",",
                                 ".",        "item1.",
                                 "TRUE",     "X-EVOLUTION-LIST:TRUE",
                                 "=HOME",    "%",
                                 ";X",       "ENCODING",
                                 "B",        "QUOTED-PRINTABLE",
                                 ";QUOTED",  " ",
                                 "\t",       "UID:c",
                                 "/",        ";ENCODING=QUOTED-PRINTABLE",
                                 "BEGIN",    "END",
                                 ":VCARD",   "END:VCARD\r\n",
                                 "\u2028",   "X-EVOLUTION-LIST",
                                 "==",       ";;",
                                 "UID:\r\n", "BEGIN:VCARD\r\n",
                                 "_",        ";CHARSET=UTF-16"};
        const auto choice = random_() % 16;
        if (choice != 0) {
            card += usual[random_() % usual.size()];
        }
        if (choice < 2) {
            card += kOdd[random_() % kOdd.size()];
        }
    }

    std::mt19937 random_{1};
};

TEST(PlainCards, AreReadAsByLibebook)
{
    CardWriter writer;
    std::size_t plain = 0;
    for (int i = 0; i < 20'000; ++i) {
        const auto card = writer.next();
        const auto uid = plainUid(card);
        if (!uid) {
            continue;
        }
        ++plain;
        const std::unique_ptr<EContact, Unreferenced> contact(
            e_contact_new_from_vcard(card.c_str()));

        EXPECT_EQ(e_contact_get(contact.get(), E_CONTACT_IS_LIST), nullptr) << card;
        EXPECT_STREQ(static_cast<const char*>(e_contact_get_const(contact.get(), E_CONTACT_UID)),
                     std::string(*uid).c_str())
            << card;
    }
    EXPECT_GT(plain, 2'000U);
}

}  // namespace
}  // namespace dunmora::test
