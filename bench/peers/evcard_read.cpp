// Reads the cards of a file with GNOME's EVCard.

#include <libebook-contacts/libebook-contacts.h>

#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cerr << "usage: evcard_read FILE\n";
        return 2;
    }
    std::ifstream in(argv[1], std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(in), {}};
    constexpr std::string_view kEnd = "END:VCARD\r\n";
    guint properties = 0;
    for (std::size_t begin = 0; begin < text.size();) {
        const auto found = text.find(kEnd, begin);
        const auto end = found == std::string::npos ? text.size() : found + kEnd.size();
        auto* card = e_vcard_new_from_string(text.substr(begin, end - begin).c_str());
        // EVCard parses a card at its first access.
        properties += g_list_length(e_vcard_get_attributes(card));
        g_object_unref(card);
        begin = end;
    }
    return properties > 0 ? 0 : 1;
}
