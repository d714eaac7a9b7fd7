// Reads the cards of a file with KDE's KContacts.

#include <KContacts/VCardConverter>

#include <QByteArray>
#include <QFile>

#include <iostream>

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cerr << "usage: kcontacts_read FILE\n";
        return 2;
    }
    QFile file(QFile::decodeName(argv[1]));
    if (!file.open(QIODevice::ReadOnly)) {
        std::cerr << "kcontacts_read: cannot open the file\n";
        return 1;
    }
    const auto people = KContacts::VCardConverter().parseVCards(file.readAll());
    std::cout << people.size() << '\n';
    return people.isEmpty() ? 1 : 0;
}
