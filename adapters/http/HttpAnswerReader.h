#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

/// What the head of an answer says, as far as it matters here.
struct HttpHead {
    int status = 0;
    /// Where the server sends to; empty where its status does not send elsewhere or it does not say
    /// where.
    std::string location;
};

/// Reads the answer to a GET from a connection that carries nothing else (RFC 9112). Every byte
/// comes from a stranger: what is cut off or malformed is an error, never the shorter answer that
/// it might pass for, and besides the body only so much is taken that memory cannot run out.
///
/// Thread: any, one at a time.
class HttpAnswerReader final {
public:
    /// Takes the next bytes; what follows the end of the answer is not looked at.
    /// Errors: PlatformError for what is no answer, and then no more may be taken.
    void take(std::string_view bytes);

    /// Takes the end of the connection, which is the end of some bodies.
    /// Errors: PlatformError when the answer is cut off.
    void takeEnd();

    /// The head of the final answer, once it has come whole.
    const std::optional<HttpHead>& head() const { return head_; }

    /// The body that has come since the last call.
    std::string takeBody();

    bool isComplete() const { return part_ == Part::Complete; }

private:
    enum class Part {
        StatusLine,
        Fields,
        CountedBody,
        ChunkSize,
        Chunk,
        ChunkEnd,
        Trailer,
        BodyUntilTheEnd,
        Complete,
    };

    /// The fields that may matter, each with the values that it has in this head.
    struct Fields {
        std::vector<std::string> location;
        std::vector<std::string> contentLength;
        std::vector<std::string> transferEncoding;
        // The one that a line which begins with a blank goes on with; none when that does not
        // matter.
        std::vector<std::string>* last = nullptr;
    };

    bool takesBytes() const;
    std::string_view takeBytes(std::string_view bytes);
    std::string_view takeLine(std::string_view bytes);
    void readLine(std::string_view line);
    void readStatusLine(std::string_view line);
    void readField(std::string_view line);
    void readChunkSize(std::string_view line);
    void beginBody();

    Part part_ = Part::StatusLine;
    // The line in hand, without its end.
    std::string line_;
    // All that came besides the body.
    std::size_t framing_ = 0;

    int status_ = 0;
    Fields fields_;

    std::optional<HttpHead> head_;
    // What the body, or the chunk in hand, still lacks.
    std::uint64_t missing_ = 0;
    std::string body_;
};

}  // namespace dunmora
