#include "adapters/eds/StoredPictures.h"
#include "tests/fakes/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace dunmora::test {
namespace {

/// A folder of the service with the pictures of one book.
class StoredPicturesTest : public testing::Test {
protected:
    std::filesystem::path folder() const { return temporary_.path() / "addressbook"; }

    /// Stores a picture and returns its address.
    std::string store(const std::string& name, const std::string& bytes,
                      const std::filesystem::path& place = "book/photos")
    {
        std::filesystem::create_directories(folder() / place);
        std::ofstream(folder() / place / name, std::ios::binary) << bytes;
        return addressOf(name, place);
    }

    std::string addressOf(const std::string& name,
                          const std::filesystem::path& place = "book/photos") const
    {
        return "file://" + (folder() / place / name).string();
    }

    std::string with(const std::string& card) const { return withPictures(card, folder()); }

    static std::string cardWith(const std::string& property)
    {
        return "BEGIN:VCARD\r\nVERSION:3.0\r\nUID:ann\r\n" + property +
               "\r\nNOTE:after\r\nEND:VCARD";
    }

private:
    TemporaryFolder temporary_;
};

TEST_F(StoredPicturesTest, PutsAPictureIntoTheCard)
{
    const auto address = store("ann_photo-file0.image-2FJPEG", "picture");

    EXPECT_EQ(with(cardWith("PHOTO;VALUE=uri:" + address)),
              cardWith("PHOTO;TYPE=JPEG;ENCODING=b:cGljdHVyZQ=="));
}

TEST_F(StoredPicturesTest, WritesEveryByte)
{
    std::string bytes;
    for (int i = 0; i < 256; ++i) {
        bytes += static_cast<char>(i);
    }

    const auto card = with(cardWith("LOGO;VALUE=uri:" + store("a", bytes)));

    EXPECT_NE(card.find("LOGO;ENCODING=b:AAECAwQFBgcICQoLDA0ODxAREhMUFRYXGBkaGxwdHh8gISIjJCUm"),
              std::string::npos)
        << card;
    EXPECT_NE(card.find("+/w==\r\n"), std::string::npos) << card;
}

TEST_F(StoredPicturesTest, KeepsTheOtherParametersAndTheGroup)
{
    const auto address = store("a.image-2FJPEG", "picture");

    EXPECT_EQ(with(cardWith("item1.photo;X-OWN=\"a;b\";value=URI;TYPE=GIF:" + address)),
              cardWith("item1.photo;X-OWN=\"a;b\";TYPE=GIF;ENCODING=b:cGljdHVyZQ=="));
}

TEST_F(StoredPicturesTest, ReadsAFoldedAddressWithEscapedCharacters)
{
    auto address = store("ann lee.image-2FPNG", "picture");
    address.replace(address.find("ann lee"), 7, "ann%20\r\n lee");

    EXPECT_EQ(with(cardWith("PHOTO;VALUE=uri:" + address)),
              cardWith("PHOTO;TYPE=PNG;ENCODING=b:cGljdHVyZQ=="));
}

TEST_F(StoredPicturesTest, ReadsNoOtherFile)
{
    store("stored", "picture");
    for (const auto& address :
         {store("secret", "x", "."), store("secret", "x", "book"),
          store("secret", "x", "book/photos/more"), store("secret", "x", "../photos"),
          addressOf("../photos/stored"), addressOf("../../../secret"), std::string("file://"),
          std::string("https://example.com/book/photos/stored")}) {
        const auto card = cardWith("PHOTO;VALUE=uri:" + address);

        EXPECT_EQ(with(card), card);
    }
}

TEST_F(StoredPicturesTest, FollowsNoLink)
{
    store("stored", "picture");
    store("secret", "x", "..");
    std::filesystem::create_symlink(folder() / "../secret", folder() / "book/photos/link");
    const auto card = cardWith("PHOTO;VALUE=uri:" + addressOf("link"));

    EXPECT_EQ(with(card), card);
}

TEST_F(StoredPicturesTest, LeavesOtherPropertiesAlone)
{
    const auto address = store("stored", "picture");
    const auto card = cardWith("URL:" + address + "\r\nX-PHOTO:" + address +
                               "\r\nPHOTO;ENCODING=b:cGljdHVyZQ==\r\nNOTE:folded\r\n  text");

    EXPECT_EQ(with(card), card);
}

TEST_F(StoredPicturesTest, KeepsTheAddressOfAPictureThatIsGone)
{
    const auto card = cardWith("PHOTO;VALUE=uri:" + addressOf("gone"));

    EXPECT_EQ(with(card), card);
}

TEST_F(StoredPicturesTest, DropsThePicturesThatAreGone)
{
    const auto there = store("stored", "picture");
    const auto card =
        cardWith("LOGO;VALUE=uri:" + there + "\r\nPHOTO;VALUE=uri:" + addressOf("gone") +
                 "\r\nPHOTO:https://example.com/gone");

    const auto result = withoutLostPictures(card, folder());

    EXPECT_EQ(result.lost, 1U);
    EXPECT_EQ(result.card,
              cardWith("LOGO;VALUE=uri:" + there + "\r\nPHOTO:https://example.com/gone"));
}

}  // namespace
}  // namespace dunmora::test
