#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

/// The status and the header fields of a response that matter here.
struct HttpResponseHead {
    int status = 0;
    /// The target of a redirect; empty when the status is not a redirect or Location is missing.
    std::string location;
};

/// Reads the response to a GET from a connection that carries nothing else (RFC 9112).
///
/// The bytes are not trusted: a truncated or malformed response is an error, never a shorter valid
/// one. Everything outside the body is limited to 1 MiB in total; the caller limits the body.
///
/// Thread: any, one at a time.
class HttpResponseReader final {
public:
    /// How the connection was closed. The close is incomplete when somebody between here and the
    /// server may have cut the connection (RFC 9112 §9.8).
    enum class Close { Complete, Incomplete };

    /// Reads the next bytes; ignores bytes after the end of the response.
    /// Errors: PlatformError for a malformed response; the reader must not be used after that.
    void receive(std::string_view bytes);

    /// Handles the end of the connection, which ends a body without a length if it is complete.
    /// Errors: PlatformError when the response is or may be truncated.
    void receiveEnd(Close close);

    /// The head of the final response, once it is complete.
    const std::optional<HttpResponseHead>& head() const { return head_; }

    /// Returns the part of the body received since the last call.
    std::string takeBody();

    bool isComplete() const { return part_ == Part::Complete; }

private:
    enum class Part {
        StatusLine,
        HeaderFields,
        BodyOfKnownLength,
        ChunkSize,
        ChunkData,
        ChunkEnd,
        TrailerSection,
        BodyUntilClose,
        Complete,
    };

    /// The values of the header fields that matter, in the order received.
    struct HeaderFields {
        std::vector<std::string> location;
        std::vector<std::string> contentEncoding;
        std::vector<std::string> contentLength;
        std::vector<std::string> transferEncoding;
        // The field that a folded line (RFC 9112 §5.2) continues; null when that field is ignored.
        // A pointer to a member, so that a copy continues its own field.
        std::vector<std::string> HeaderFields::*last = nullptr;
    };

    bool isInBody() const;
    std::string_view readBody(std::string_view bytes);
    std::string_view readBytesOfLine(std::string_view bytes);
    void readLine(std::string_view line);
    void readStatusLine(std::string_view line);
    void readHeaderField(std::string_view line);
    void readChunkSize(std::string_view line);
    void beginBody();

    Part part_ = Part::StatusLine;
    // The line being received, without its line end.
    std::string line_;
    // The number of bytes received outside the body.
    std::size_t framingSize_ = 0;

    int status_ = 0;
    HeaderFields fields_;

    std::optional<HttpResponseHead> head_;
    // The bytes still missing from the body or from the current chunk.
    std::uint64_t missing_ = 0;
    std::string body_;
};

}  // namespace dunmora
