#include "adapters/http/HttpResponseReader.h"

#include "platform/PlatformError.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace dunmora::test {

namespace {

using namespace std::string_literals;

const auto kChunked = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"s;

using Close = HttpResponseReader::Close;

/// Reads a complete response and the end of the connection.
HttpResponseReader read(std::string_view bytes, Close close = Close::Complete)
{
    HttpResponseReader reader;
    reader.receive(bytes);
    reader.receiveEnd(close);
    return reader;
}

std::string bodyOf(std::string_view bytes)
{
    return read(bytes).takeBody();
}

std::string locationOf(int status, const std::string& fields)
{
    auto response = "HTTP/1.1 " + std::to_string(status) + "\r\n";
    response += fields + "\r\n";
    return read(response).head()->location;
}

TEST(HttpResponseReader, ReadsTheStatusAndABodyOfAKnownLength)
{
    HttpResponseReader reader;

    reader.receive("HTTP/1.1 404 Not Found\r\ncontent-length: 5 \r\nX: y\r\n\r\n");
    ASSERT_TRUE(reader.head().has_value());
    EXPECT_EQ(reader.head()->status, 404);
    EXPECT_FALSE(reader.isComplete());
    reader.receive("0.2\nU and more");

    EXPECT_TRUE(reader.isComplete());
    EXPECT_EQ(reader.takeBody(), "0.2\nU");
    EXPECT_EQ(reader.takeBody(), "");
}

TEST(HttpResponseReader, ReadsTheSameWhateverTheSizeOfThePieces)
{
    const auto response = kChunked + "5;a=b\r\n0.2\nU\r\nA\r\nRL\nA text.\r\n0\r\nX: y\r\n\r\n";

    for (std::size_t size = 1; size <= response.size(); ++size) {
        HttpResponseReader reader;
        std::string body;
        for (std::size_t at = 0; at < response.size(); at += size) {
            EXPECT_FALSE(reader.isComplete());
            reader.receive(std::string_view(response).substr(at, size));
            body += reader.takeBody();
        }
        EXPECT_TRUE(reader.isComplete());
        EXPECT_EQ(body, "0.2\nURL\nA text.");
    }
}

TEST(HttpResponseReader, ReadsABodyUntilTheConnectionCloses)
{
    EXPECT_EQ(bodyOf("HTTP/1.0 200 OK\r\n\r\n0.2\nURL"), "0.2\nURL");
    EXPECT_EQ(bodyOf("HTTP/1.0 200\r\n\r\n"), "");
}

TEST(HttpResponseReader, RefusesABodyWithoutALengthAfterAnIncompleteClose)
{
    EXPECT_THROW(read("HTTP/1.0 200 OK\r\n\r\n0.2\nURL", Close::Incomplete), PlatformError);
    EXPECT_THROW(read("HTTP/1.0 200 OK\r\n\r\n", Close::Incomplete), PlatformError);
}

TEST(HttpResponseReader, NeedsNoCompleteCloseWhenTheEndOfTheBodyIsKnown)
{
    for (const auto& response :
         {"HTTP/1.1 200 OK\r\nContent-Length: 1\r\n\r\nx"s, kChunked + "1\r\nx\r\n0\r\n\r\n"}) {
        EXPECT_EQ(read(response, Close::Incomplete).takeBody(), "x");
    }
}

TEST(HttpResponseReader, AcceptsLineFeedsAsLineEnds)
{
    EXPECT_EQ(bodyOf("HTTP/1.1 200 OK\nContent-Length: 1\n\nx"), "x");
}

TEST(HttpResponseReader, AcceptsResponsesWithoutABody)
{
    EXPECT_EQ(bodyOf("HTTP/1.1 204 No Content\r\n\r\n"), "");
    EXPECT_EQ(bodyOf("HTTP/1.1 304 Not Modified\r\nContent-Length: 9\r\n\r\n"), "");
    EXPECT_EQ(bodyOf("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n"), "");
}

TEST(HttpResponseReader, SkipsInterimResponses)
{
    auto reader = read("HTTP/1.1 100 Continue\r\nContent-Length: 7\r\n\r\n"
                       "HTTP/1.1 103 Early Hints\r\nLocation: /x\r\n\r\n"
                       "HTTP/1.1 103 Early Hints\r\nTransfer-Encoding: chunked\r\n\r\n"
                       "HTTP/1.1 200 OK\r\nContent-Length: 1\r\n\r\nx");

    EXPECT_EQ(reader.head()->status, 200);
    EXPECT_EQ(reader.head()->location, "");
    EXPECT_EQ(reader.takeBody(), "x");
}

TEST(HttpResponseReader, DoesNotFoldALineIntoTheInterimResponse)
{
    EXPECT_EQ(bodyOf("HTTP/1.1 100 Continue\r\nContent-Length: 7\r\n\r\n"
                     "HTTP/1.1 200 OK\r\n 9\r\n\r\nx"),
              "x");
}

TEST(HttpResponseReader, ReadsTheLocationOfARedirect)
{
    for (const auto& [fields, location] :
         {std::pair{"LOCATION:\t/a b \r\n"s, "/a b"s},
          std::pair{"Location: /a\r\n /b\r\n"s, "/a /b"s},
          std::pair{"Location:\r\n /b \r\n"s, "/b"s}, std::pair{"Location: /a\r\n \r\n"s, "/a"s},
          std::pair{"Location: /a\r\nLocation:/a\r\n"s, "/a"s},
          std::pair{"Location:\r\nLocation: /a\r\n"s, "/a"s},
          std::pair{"Location\r\n /a\r\n"s, ""s}}) {
        for (const int status : {301, 302, 303, 307, 308}) {
            EXPECT_EQ(locationOf(status, fields), location) << status << fields;
        }
    }
}

TEST(HttpResponseReader, IgnoresTheLocationOfOtherStatuses)
{
    for (const std::string status : {"200", "201", "300", "305", "404"}) {
        auto reader = read("HTTP/1.1 " + status +
                           "\r\nLocation: /a\r\nLocation: /b\r\nContent-Length: 1\r\n\r\nx");

        EXPECT_EQ(reader.head()->location, "") << status;
        EXPECT_EQ(reader.takeBody(), "x") << status;
    }
}

TEST(HttpResponseReader, IgnoresOtherLinesOfTheHeader)
{
    EXPECT_EQ(bodyOf("HTTP/1.1 200 OK\r\n folded\r\nno colon\r\nlocation\r\nContent-Length: "
                     "1\r\nContent-Length: 1\r\n\r\nx"),
              "x");
}

TEST(HttpResponseReader, PrefersChunkedEncodingToALength)
{
    EXPECT_EQ(bodyOf("HTTP/1.1 200 OK\r\nContent-Length: 99\r\nTransfer-Encoding: Chunked\r\n\r\n"
                     "1\r\nx\r\n0\r\n\r\n"),
              "x");
}

class RefusedResponseTest : public testing::TestWithParam<const char*> {};

TEST_P(RefusedResponseTest, IsAnError)
{
    EXPECT_THROW(read(GetParam()), PlatformError);
}

INSTANTIATE_TEST_SUITE_P(NotHttp, RefusedResponseTest,
                         testing::Values("\r\n", "nonsense\r\n\r\n", "HTTP/2 200\r\n\r\n",
                                         "HTTP/1.1 20\r\n\r\n", "HTTP/1.1 2000\r\n\r\n",
                                         "HTTP/1.1 -20\r\n\r\n", "HTTP/1.1200 OK\r\n\r\n",
                                         "HTTP/1.1 2x0 OK\r\n\r\n", "ICY 200 OK\r\n\r\n"));
INSTANTIATE_TEST_SUITE_P(
    Truncated, RefusedResponseTest,
    testing::Values("", "HTTP/1.1 200", "HTTP/1.1 200 OK\r\n", "HTTP/1.1 100 Continue\r\n\r\n",
                    "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nx",
                    "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n",
                    "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n2\r\nx",
                    "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n1\r\nx\r\n",
                    "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n1\r\nx\r\n0\r\n"));
INSTANTIATE_TEST_SUITE_P(
    Malformed, RefusedResponseTest,
    testing::Values("HTTP/1.1 200 OK\r\nContent-Length: x\r\n\r\n",
                    "HTTP/1.1 200 OK\r\nContent-Length: -1\r\n\r\n",
                    "HTTP/1.1 200 OK\r\nContent-Length: +1\r\n\r\nx",
                    "HTTP/1.1 200 OK\r\nContent-Length: 1\r\nContent-Length: 2\r\n\r\nxx",
                    "HTTP/1.1 200 OK\r\nContent-Length: 99999999999999999999\r\n\r\n",
                    "HTTP/1.1 200 OK\r\nTransfer-Encoding: gzip, chunked\r\n\r\n0\r\n\r\n",
                    "HTTP/1.1 200 OK\r\nContent-Length:\r\n\r\nx",
                    "HTTP/1.1 302 Found\r\nLocation: /a\r\nLocation: /b\r\n\r\n",
                    "HTTP/1.1 302 Found\r\nLocation: /a\r\nLocation: /a\r\n /b\r\n\r\n",
                    "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\nx\r\n0\r\n\r\n",
                    "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n\r\nx\r\n0\r\n\r\n",
                    "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n1\r\nxy\r\n0\r\n\r\n",
                    "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
                    "fffffffffffffffff\r\nx\r\n0\r\n\r\n"));

INSTANTIATE_TEST_SUITE_P(
    BlankBeforeTheColon, RefusedResponseTest,
    testing::Values("HTTP/1.1 200 OK\r\nContent-Length : 2\r\n\r\nx",
                    "HTTP/1.1 200 OK\r\nContent-Length\t: 1\r\n\r\nx",
                    "HTTP/1.1 200 OK\r\nContent-Length\r: 1\r\n\r\nx",
                    "HTTP/1.1 200 OK\r\nTransfer-Encoding : chunked\r\n\r\n1\r\nx\r\n0\r\n\r\n",
                    "HTTP/1.1 302 Found\r\nLocation : /a\r\n\r\n",
                    "HTTP/1.1 200 OK\r\nX : y\r\nContent-Length: 1\r\n\r\nx"));
INSTANTIATE_TEST_SUITE_P(
    Encoded, RefusedResponseTest,
    testing::Values(
        "HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\nContent-Length: 1\r\n\r\nx",
        "HTTP/1.1 404 Not Found\r\ncontent-encoding:br\r\n\r\nx",
        "HTTP/1.1 200 OK\r\nContent-Encoding: identity\r\nContent-Encoding: gzip\r\n\r\nx",
        "HTTP/1.1 200 OK\r\nContent-Encoding: identity, gzip\r\n\r\nx",
        "HTTP/1.1 200 OK\r\nContent-Encoding:\r\n gzip\r\n\r\nx",
        "HTTP/1.1 302 Found\r\nContent-Encoding: gzip\r\n\r\nx"));

TEST(HttpResponseReader, AcceptsABodyThatIsNotEncoded)
{
    for (const std::string coding : {"identity", "Identity ", ""}) {
        EXPECT_EQ(bodyOf("HTTP/1.1 200 OK\r\nContent-Encoding: " + coding + "\r\n\r\nx"), "x");
    }
}

TEST(HttpResponseReader, IgnoresHowTheBodyOfARedirectIsEncoded)
{
    EXPECT_EQ(locationOf(302, "Location: /a\r\nContent-Encoding: gzip\r\n"), "/a");
}

TEST(HttpResponseReader, ContinuesAFoldedLineInACopy)
{
    HttpResponseReader original;
    original.receive("HTTP/1.1 302 Found\r\nLocation: /a\r\n");

    auto copy = original;
    copy.receive(" /b\r\n\r\n");
    original.receive("\r\n");

    EXPECT_EQ(copy.head()->location, "/a /b");
    EXPECT_EQ(original.head()->location, "/a");
}

TEST(HttpResponseReader, LimitsTheBytesOutsideTheBody)
{
    for (const auto& [begin, again] :
         {std::pair{"HTTP/1.1 200 "s, "0123456789"s},
          std::pair{"HTTP/1.1 200 OK\r\nX: "s, "0123456789"s},
          std::pair{"HTTP/1.1 200 OK\r\n"s, "X: y\r\n"s},
          std::pair{""s, "HTTP/1.1 100 Continue\r\n\r\n"s}, std::pair{kChunked, "0000000000"s},
          std::pair{kChunked + "1;", "x=0123456789"s},
          std::pair{kChunked + "0\r\n", "X: y\r\n"s}}) {
        HttpResponseReader reader;
        reader.receive(begin);
        std::size_t taken = 0;
        EXPECT_THROW(
            {
                for (; taken < (std::size_t{4} << 20U); taken += again.size()) {
                    reader.receive(again);
                }
            },
            PlatformError)
            << begin << again;
        EXPECT_LT(taken, std::size_t{2} << 20U);
    }
}

TEST(HttpResponseReader, LimitsAHeadTheSameWhateverTheSizeOfThePieces)
{
    constexpr std::size_t kLimit = std::size_t{1} << 20U;
    const auto begin = "HTTP/1.1 204 No Content\r\nX: "s;
    const auto end = "\r\n\r\n"s;
    const auto longest = begin + std::string(kLimit - begin.size() - end.size(), 'x') + end;
    const auto tooLong = "HTTP/1.1 204 No Contents" + longest.substr(begin.find('\r'));
    ASSERT_EQ(tooLong.size(), kLimit + 1);

    for (const std::size_t size : {std::size_t{1}, std::size_t{2}, std::size_t{1000}, 2 * kLimit}) {
        const auto readInPieces = [&](std::string_view response) {
            HttpResponseReader reader;
            for (std::size_t at = 0; at < response.size(); at += size) {
                reader.receive(response.substr(at, size));
            }
            return reader.isComplete();
        };
        EXPECT_TRUE(readInPieces(longest)) << size;
        EXPECT_THROW(readInPieces(tooLong), PlatformError) << size;
    }
}

TEST(HttpResponseReader, KeepsEveryByteOfABody)
{
    EXPECT_EQ(bodyOf(kChunked + "4\r\n\r\n\0\n\r\n0\r\n\r\n"s), "\r\n\0\n"s);
}

}  // namespace

}  // namespace dunmora::test
