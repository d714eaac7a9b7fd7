#include "tests/adapters/eds/CardDavServer.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <chrono>
#include <stdexcept>
#include <string_view>

namespace dunmora::test {

namespace {

constexpr std::string_view kFolder = "/book/";
constexpr std::string_view kSuffix = ".vcf";
// Longer than anything takes, so that a test fails instead of hanging.
constexpr std::chrono::seconds kPatience(10);

std::string pathOf(const std::string& uid)
{
    return std::string(kFolder) + uid + std::string(kSuffix);
}

/// The uid in the path of a card.
std::string uidIn(const std::string& path)
{
    const auto begin = std::min(path.size(), kFolder.size());
    const auto end = std::max(begin, path.size() - std::min(path.size(), kSuffix.size()));
    return path.substr(begin, end - begin);
}

std::string quoted(std::size_t version)
{
    return "\"v" + std::to_string(version) + "\"";
}

std::string escaped(std::string_view text)
{
    std::string xml;
    for (const char c : text) {
        switch (c) {
        case '&':
            xml += "&amp;";
            break;
        case '<':
            xml += "&lt;";
            break;
        case '\r':
            // XML parsers normalize a literal carriage return away.
            xml += "&#13;";
            break;
        default:
            xml += c;
        }
    }
    return xml;
}

std::string responseElement(const std::string& path, const std::string& properties)
{
    return "<D:response><D:href>" + path + "</D:href><D:propstat><D:prop>" + properties +
           "</D:prop><D:status>HTTP/1.1 200 OK</D:status></D:propstat></D:response>";
}

std::string multistatus(const std::string& responses)
{
    return R"(<?xml version="1.0" encoding="utf-8"?><D:multistatus xmlns:D="DAV:" )"
           R"(xmlns:C="urn:ietf:params:xml:ns:carddav" xmlns:S="http://calendarserver.org/ns/">)" +
           responses + "</D:multistatus>";
}

/// Receives until the text is enough. Returns false if the connection ends before that.
template <typename IsEnough>
bool receive(int socket, std::string& text, IsEnough isEnough)
{
    std::array<char, 4096> part{};
    while (!isEnough(text)) {
        const auto count = recv(socket, part.data(), part.size(), 0);
        if (count <= 0) {
            return false;
        }
        text.append(part.data(), static_cast<std::size_t>(count));
    }
    return true;
}

void send(int socket, std::string_view text)
{
    while (!text.empty()) {
        const auto count = ::send(socket, text.data(), text.size(), MSG_NOSIGNAL);
        if (count <= 0) {
            return;
        }
        text.remove_prefix(static_cast<std::size_t>(count));
    }
}

}  // namespace

CardDavServer::CardDavServer()
{
    listen();
}

CardDavServer::~CardDavServer()
{
    goAway();
}

void CardDavServer::listen()
{
    listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int yes = 1;
    setsockopt(listener_, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof(yes));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port_);
    socklen_t size = sizeof(address);
    constexpr int kBacklog = 16;
    if (bind(listener_, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
        ::listen(listener_, kBacklog) != 0 ||
        getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
        throw std::runtime_error("No port to listen on.");
    }
    port_ = ntohs(address.sin_port);
    serving_ = std::thread([this, listener = listener_] { serve(listener); });
}

void CardDavServer::goAway()
{
    if (!serving_.joinable()) {
        return;
    }
    {
        const std::lock_guard guard(mutex_);
        isAway_ = true;
        changed_.notify_all();
    }
    shutdown(listener_, SHUT_RDWR);
    serving_.join();
    close(listener_);
    // No visitor is added any more.
    for (auto& visitor : visitors_) {
        shutdown(visitor.socket, SHUT_RDWR);
    }
    for (auto& visitor : visitors_) {
        visitor.thread.join();
        close(visitor.socket);
    }
    visitors_.clear();
}

void CardDavServer::comeBack()
{
    {
        const std::lock_guard guard(mutex_);
        isAway_ = false;
        wasListed_ = false;
        ++version_;
    }
    listen();
}

void CardDavServer::serve(int listener)
{
    while (true) {
        const int socket = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (socket < 0) {
            return;
        }
        visitors_.push_back({socket, std::thread([this, socket] { talk(socket); })});
    }
}

/// One request per connection, so that no client reuses a dead one.
void CardDavServer::talk(int socket)
{
    constexpr std::string_view kEnd = "\r\n\r\n";
    std::string text;
    if (!receive(socket, text,
                 [&](const auto& all) { return all.find(kEnd) != std::string::npos; })) {
        return;
    }
    Request request;
    const auto head = text.substr(0, text.find(kEnd));
    request.body = text.substr(head.size() + kEnd.size());
    const auto firstBlank = head.find(' ');
    request.method = head.substr(0, firstBlank);
    request.path = head.substr(firstBlank + 1, head.find(' ', firstBlank + 1) - firstBlank - 1);
    for (auto begin = head.find("\r\n"); begin != std::string::npos;) {
        const auto end = head.find("\r\n", begin + 2);
        const auto line = head.substr(begin + 2, end == std::string::npos ? end : end - begin - 2);
        const auto colon = line.find(':');
        auto name = line.substr(0, colon);
        std::transform(name.begin(), name.end(), name.begin(),
                       [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        request.headers[name] =
            line.substr(std::min(line.size(), line.find_first_not_of(' ', colon + 1)));
        begin = end;
    }
    const auto length = request.headers.find("content-length");
    const auto size = length == request.headers.end() ? 0 : std::stoul(length->second);
    if (!receive(socket, request.body, [&](const auto& all) { return all.size() >= size; })) {
        return;
    }
    const auto response = respond(request);
    if (response.status == 0) {
        shutdown(socket, SHUT_RDWR);
        return;
    }
    send(socket, "HTTP/1.1 " + std::to_string(response.status) +
                     " As said\r\nDAV: 1, 2, 3, addressbook\r\n"
                     "Allow: OPTIONS, GET, PUT, DELETE, PROPFIND, REPORT\r\n"
                     "WWW-Authenticate: Basic realm=\"book\"\r\n"
                     "Content-Type: application/xml; charset=utf-8\r\nConnection: close\r\n" +
                     (response.etag.empty() ? "" : "ETag: " + response.etag + "\r\n") +
                     "Content-Length: " + std::to_string(response.body.size()) + "\r\n\r\n" +
                     response.body);
    shutdown(socket, SHUT_WR);
}

CardDavServer::Response CardDavServer::respond(const Request& request)
{
    std::unique_lock lock(mutex_);
    if (isLocked_) {
        constexpr int kUnauthorized = 401;
        return {kUnauthorized, "", ""};
    }
    if (request.method == "OPTIONS") {
        return {};
    }
    if (request.method == "PROPFIND") {
        return list(request);
    }
    if (request.method == "REPORT") {
        return report(request);
    }
    if (request.method == "GET") {
        return get(request);
    }
    if (request.method == "DELETE") {
        return remove(request, lock);
    }
    if (request.method == "PUT") {
        return store(request, lock);
    }
    constexpr int kNotFound = 404;
    return {kNotFound, "", ""};
}

CardDavServer::Response CardDavServer::list(const Request& request)
{
    const std::string right = isReadOnly_ ? "<D:read/>" : "<D:all/>";
    auto responses = responseElement(
        std::string(kFolder),
        "<S:getctag>t" + std::to_string(version_) +
            "</S:getctag><D:current-user-privilege-set><D:privilege>" + right +
            "</D:privilege></D:current-user-privilege-set><D:resourcetype><D:collection/>"
            "<C:addressbook/></D:resourcetype>");
    if (const auto depth = request.headers.find("depth");
        depth != request.headers.end() && depth->second == "1") {
        for (const auto& [uid, card] : cards_) {
            responses +=
                responseElement(pathOf(uid), "<D:getetag>" + quoted(card.version) +
                                                 "</D:getetag><D:resourcetype/>"
                                                 "<D:getcontenttype>text/vcard</D:getcontenttype>");
        }
        wasListed_ = true;
        changed_.notify_all();
    }
    constexpr int kMultistatus = 207;
    return {kMultistatus, multistatus(responses), ""};
}

CardDavServer::Response CardDavServer::report(const Request& request) const
{
    std::string responses;
    for (const auto& [uid, card] : cards_) {
        if (request.body.find(pathOf(uid) + "<") != std::string::npos) {
            responses += responseElement(pathOf(uid), "<D:getetag>" + quoted(card.version) +
                                                          "</D:getetag><C:address-data>" +
                                                          escaped(card.text) + "</C:address-data>");
        }
    }
    constexpr int kMultistatus = 207;
    return {kMultistatus, multistatus(responses), ""};
}

CardDavServer::Response CardDavServer::get(const Request& request) const
{
    constexpr int kNotFound = 404;
    const auto card = cards_.find(uidIn(request.path));
    return card == cards_.end() ? Response{kNotFound, "", ""}
                                : Response{200, card->second.text, quoted(card->second.version)};
}

/// The status of a change that fails; 0 when it does not. Waits while changes are held.
int CardDavServer::fault(std::unique_lock<std::mutex>& lock)
{
    constexpr int kForbidden = 403;
    ++held_;
    changed_.notify_all();
    changed_.wait(lock, [this] { return !isHolding_ || isAway_; });
    --held_;
    if (isAway_ || isReadOnly_) {
        return kForbidden;
    }
    return removals_.size() + additions_.size() > refusedAfter_ ? refusal_ : 0;
}

CardDavServer::Response CardDavServer::remove(const Request& request,
                                              std::unique_lock<std::mutex>& lock)
{
    constexpr int kDone = 204;
    constexpr int kNotFound = 404;
    constexpr int kPreconditionFailed = 412;
    const auto uid = uidIn(request.path);
    removals_.push_back(uid);
    if (const auto status = fault(lock); status != 0) {
        return {status, "", ""};
    }
    const auto card = cards_.find(uid);
    if (card == cards_.end()) {
        return {kNotFound, "", ""};
    }
    const auto condition = request.headers.find("if-match");
    if (condition != request.headers.end() && condition->second != quoted(card->second.version)) {
        return {kPreconditionFailed, "", ""};
    }
    cards_.erase(card);
    ++version_;
    return {isLosingAnswers_ ? 0 : kDone, "", ""};
}

CardDavServer::Response CardDavServer::store(const Request& request,
                                             std::unique_lock<std::mutex>& lock)
{
    constexpr int kCreated = 201;
    constexpr int kPreconditionFailed = 412;
    const auto uid = uidIn(request.path);
    additions_.push_back(uid);
    if (const auto status = fault(lock); status != 0) {
        return {status, "", ""};
    }
    const auto known = cards_.find(uid);
    const auto match = request.headers.find("if-match");
    const bool isNew = request.headers.contains("if-none-match");
    if ((isNew && known != cards_.end()) ||
        (match != request.headers.end() &&
         (known == cards_.end() || match->second != quoted(known->second.version)))) {
        return {kPreconditionFailed, "", ""};
    }
    cards_[uid] = {request.body, ++version_};
    return {isLosingAnswers_ ? 0 : kCreated, "", quoted(version_)};
}

void CardDavServer::put(const std::string& uid, const std::string& card)
{
    const std::lock_guard guard(mutex_);
    cards_[uid] = {card, ++version_};
    wasListed_ = false;
}

std::map<std::string, std::string> CardDavServer::cards() const
{
    const std::lock_guard guard(mutex_);
    std::map<std::string, std::string> texts;
    for (const auto& [uid, card] : cards_) {
        texts.emplace(uid, card.text);
    }
    return texts;
}

void CardDavServer::forbidChanges()
{
    const std::lock_guard guard(mutex_);
    isReadOnly_ = true;
}

void CardDavServer::lockOut()
{
    const std::lock_guard guard(mutex_);
    isLocked_ = true;
    ++version_;
}

void CardDavServer::refuseChanges(int status, std::size_t after)
{
    const std::lock_guard guard(mutex_);
    refusal_ = status;
    refusedAfter_ = removals_.size() + additions_.size() + after;
}

void CardDavServer::loseRepliesToChanges()
{
    const std::lock_guard guard(mutex_);
    isLosingAnswers_ = true;
}

void CardDavServer::holdChanges()
{
    const std::lock_guard guard(mutex_);
    isHolding_ = true;
}

void CardDavServer::awaitHeldChange() const
{
    std::unique_lock lock(mutex_);
    if (!changed_.wait_for(lock, kPatience, [this] { return isHolding_ && held_ > 0; })) {
        throw std::runtime_error("Nobody asks for a change.");
    }
}

void CardDavServer::letGo()
{
    const std::lock_guard guard(mutex_);
    isHolding_ = false;
    changed_.notify_all();
}

std::vector<std::string> CardDavServer::removals() const
{
    const std::lock_guard guard(mutex_);
    return removals_;
}

std::vector<std::string> CardDavServer::additions() const
{
    const std::lock_guard guard(mutex_);
    return additions_;
}

void CardDavServer::awaitListing() const
{
    std::unique_lock lock(mutex_);
    if (!changed_.wait_for(lock, kPatience, [this] { return wasListed_; })) {
        throw std::runtime_error("Nobody lists the book.");
    }
}

}  // namespace dunmora::test
