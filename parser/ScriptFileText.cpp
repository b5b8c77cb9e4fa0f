#include "ScriptFileText.h"

#include "TextEncoding.h"

#include "InputMoves.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sqlantlr {

namespace {

// A short string is decoded in pieces of this much; a file is read in
// blocks of readBytes into one buffer that every read reuses, so that
// reading touches few fresh pages. A long text is decoded in pieces of
// pieceBytes as the parse reads it.
constexpr std::size_t blockBytes = 1U << 20U;
constexpr std::size_t readBytes = 256U << 10U;
constexpr std::size_t defaultPieceBytes = 256U << 10U;
// Giving pages back costs a system call and fresh pages later: it is done
// once this much has been passed.
constexpr std::size_t defaultReleaseBytes = 2U << 20U;

std::atomic<std::size_t> heldBelow{ScriptFileText::defaultHeldInMemoryBelow};
std::atomic<std::size_t> pieceSize{defaultPieceBytes};
std::atomic<std::size_t> releaseSize{defaultReleaseBytes};

// A file descriptor closed on every path.
struct Descriptor {
    int fd = -1;
    Descriptor() = default;
    explicit Descriptor(int open) : fd(open) {}
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    ~Descriptor()
    {
        if (fd >= 0) {
            ::close(fd);
        }
    }
};

// Reads a file in pieces that end just after an ASCII byte (or at the end
// of the file). No UTF-8 sequence, well-formed or not, runs past an ASCII
// byte, so converting or checking the pieces one by one gives what the
// whole text would give. The buffer is reused and never cleared: a read
// fills what is looked at.
class Pieces {
public:
    // With `lines`, a piece ends just after a line feed instead (or at the
    // end of the file).
    Pieces(int fd, std::size_t readSize, bool lines = false) : fd_(fd), readSize_(readSize), lines_(lines) {}

    // The next piece, valid until the next call; false at the end of the
    // file or on a read error.
    bool next(std::string_view &piece)
    {
        if (taken_ != 0) {
            std::memmove(buffer_.get(), buffer_.get() + taken_, have_ - taken_);
            have_ -= taken_;
            taken_ = 0;
        }
        for (;;) {
            reserve(have_ + readSize_);
            const ssize_t got = ::read(fd_, buffer_.get() + have_, readSize_);
            if (got < 0) {
                failed_ = true;
                return false;
            }
            if (got == 0) {
                piece = std::string_view(buffer_.get(), have_);
                taken_ = have_;
                return have_ != 0;
            }
            // What was left of the last read has no place to cut: only the
            // bytes just read are looked at.
            const std::size_t fresh = have_;
            have_ += static_cast<std::size_t>(got);
            std::size_t cut = have_;
            while (cut > fresh && (lines_ ? buffer_[cut - 1] != '\n' : static_cast<unsigned char>(buffer_[cut - 1]) >= 0x80)) {
                --cut;
            }
            if (cut > fresh) {
                piece = std::string_view(buffer_.get(), cut);
                taken_ = cut;
                return true;
            }
        }
    }
    bool failed() const { return failed_; }
    // Back to the start of the file, keeping the buffer.
    bool rewind()
    {
        have_ = 0;
        taken_ = 0;
        failed_ = ::lseek(fd_, 0, SEEK_SET) != 0;
        return !failed_;
    }

private:
    void reserve(std::size_t size)
    {
        if (size > capacity_) {
            size = std::max(size, 2 * capacity_);  // a long run without ASCII grows it in doublings
            std::unique_ptr<char[]> grown(new char[size]);
            if (have_ != 0) {
                std::memcpy(grown.get(), buffer_.get(), have_);
            }
            buffer_ = std::move(grown);
            capacity_ = size;
        }
    }

    int fd_;
    std::size_t readSize_;
    bool lines_;
    std::unique_ptr<char[]> buffer_;
    std::size_t capacity_ = 0;
    std::size_t have_ = 0;   // bytes read and not yet handed out
    std::size_t taken_ = 0;  // bytes of the piece handed out last
    bool failed_ = false;
};

// A string's pieces of about `size` bytes, each ending just after an ASCII
// byte (with `lines`, a line feed), as a file's do.
class StringPieces {
public:
    StringPieces(std::string_view text, std::size_t size, bool lines = false) : rest_(text), size_(size), lines_(lines) {}
    bool next(std::string_view &piece)
    {
        if (rest_.empty()) {
            return false;
        }
        std::size_t cut = std::min(rest_.size(), size_);
        while (cut < rest_.size() && (lines_ ? rest_[cut - 1] != '\n' : static_cast<unsigned char>(rest_[cut - 1]) >= 0x80)) {
            ++cut;
        }
        piece = rest_.substr(0, cut);
        rest_.remove_prefix(cut);
        return true;
    }

private:
    std::string_view rest_;
    std::size_t size_;
    bool lines_;
};

// The NUL bytes, which the parse reads as absent.
std::size_t nulBytes(std::string_view bytes)
{
    std::size_t nuls = 0;
    for (const char *p = bytes.data(), *end = p + bytes.size();
         (p = static_cast<const char *>(std::memchr(p, 0, static_cast<std::size_t>(end - p)))) != nullptr; ++p) {
        ++nuls;
    }
    return nuls;
}

bool startsWithByteOrderMark(std::string_view bytes) { return bytes.substr(0, 3) == "\xEF\xBB\xBF"; }

// The units a piece decodes to as the parse keeps them (no NULs, no byte
// order mark at the text's start), when it is well-formed UTF-8.
bool keptUtf8Units(std::string_view piece, bool first, std::size_t &units)
{
    std::size_t decoded = 0;
    if (!validUtf8Units(piece, &decoded)) {
        return false;
    }
    units = decoded - nulBytes(piece) - static_cast<std::size_t>(first && startsWithByteOrderMark(piece));
    return true;
}

} // namespace

// The pieces of a text decoded as it is read. Each ends just after a line
// feed (or at the end of the text), so the decoded text always ends with a
// whole line: a reader that looks no further than the end of its line, and
// a CR LF pair, are never cut by the decoded end.
class ScriptFileText::Source {
public:
    virtual ~Source() = default;
    // The next piece, valid until the next call; false at the end.
    virtual bool next(std::string_view &piece) = 0;
    bool macRoman = false;  // else UTF-8
};

namespace {

class FileSource final : public ScriptFileText::Source {
public:
    FileSource(int fd, std::size_t readSize) : file_(fd), pieces_(fd, readSize, true) {}
    bool next(std::string_view &piece) override { return pieces_.next(piece); }

private:
    Descriptor file_;
    Pieces pieces_;
};

class StringSource final : public ScriptFileText::Source {
public:
    StringSource(std::string_view text, std::size_t size) : pieces_(text, size, true) {}
    bool next(std::string_view &piece) override { return pieces_.next(piece); }

private:
    StringPieces pieces_;
};

} // namespace

std::size_t ScriptFileText::heldInMemoryBelow()
{
    return heldBelow.load(std::memory_order_relaxed);
}

void ScriptFileText::setHeldInMemoryBelow(std::size_t bytes)
{
    heldBelow.store(bytes, std::memory_order_relaxed);
}

void ScriptFileText::setPieceBytes(std::size_t bytes)
{
    pieceSize.store(bytes == 0 ? defaultPieceBytes : bytes, std::memory_order_relaxed);
}

void ScriptFileText::setReleaseBytes(std::size_t bytes)
{
    releaseSize.store(bytes == 0 ? defaultReleaseBytes : bytes, std::memory_order_relaxed);
}

namespace {

// Decodes the pieces nextPiece gives (at most `capacity` bytes in all, each
// piece ending after an ASCII byte) as UTF-8 into `units`, which has room
// for `capacity` units. With a `restart`, the pieces are checked as they
// come: at the first that is not UTF-8, restart() goes back to the first
// piece and the whole text is decoded as Mac OS Roman instead. Without,
// ill-formed UTF-8 becomes U+FFFD. The units decoded, or SIZE_MAX when the
// input outgrew `capacity` or could not be read again.
std::size_t decodeWhole(char16_t *units, std::size_t capacity, const std::function<bool(std::string_view &)> &nextPiece,
                        const std::function<bool()> &restart)
{
    bool utf8 = true;
    std::size_t used = 0;
    bool first = true;
    // A piece whose decoding needs more room than is left (Mac OS Roman,
    // converted through UTF-8) is decoded aside first.
    std::u16string aside;
    std::string_view piece;
    while (nextPiece(piece)) {
        if (utf8 && restart && !isValidUtf8(piece)) {
            // The encoding holds for the whole file: decoded again from its start.
            if (!restart()) {
                return SIZE_MAX;
            }
            utf8 = false;
            used = 0;
            first = true;
            continue;
        }
        std::string converted;
        const std::string_view bytes = utf8 ? piece : std::string_view(converted = macRomanToUtf8(piece));
        char16_t *const at = units + used;
        char16_t *text = at;
        if (bytes.size() > capacity - used) {
            aside.resize(bytes.size());
            text = aside.data();
        }
        char16_t *textEnd = text + utf8ToUtf16(bytes, text);
        text = keepScriptUnits(text, textEnd, first, bytes);  // as a string's units are kept
        first = false;
        const auto count = static_cast<std::size_t>(textEnd - text);
        if (count > capacity - used) {
            return SIZE_MAX;  // a file that grew while it was read: it is read whole instead
        }
        if (text != at) {
            std::memmove(at, text, count * sizeof(char16_t));
        }
        used += count;
    }
    return used;
}

} // namespace

std::unique_ptr<ScriptFileText> ScriptFileText::open(const std::string &path, std::size_t heldInMemoryBelow)
{
    Descriptor in(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat status {};
    if (in.fd < 0 || ::fstat(in.fd, &status) != 0 || !S_ISREG(status.st_mode)) {
        return nullptr;
    }
    unsigned char head[2] = {0, 0};
    if (::pread(in.fd, head, 2, 0) == 2 && ((head[0] == 0xFF && head[1] == 0xFE) || (head[0] == 0xFE && head[1] == 0xFF))) {
        return nullptr;
    }
    const auto size = static_cast<std::size_t>(status.st_size);
    if (size < heldInMemoryBelow) {
        // Read once when it is UTF-8, which nearly every script is; at its
        // first piece that is not, read again as Mac OS Roman.
        Pieces pieces(in.fd, readBytes);
        std::unique_ptr<ScriptFileText> result =
            held(size, [&pieces](std::string_view &next) { return pieces.next(next); }, [&pieces] { return pieces.rewind(); });
        return pieces.failed() ? nullptr : std::move(result);
    }
    // A long file is read twice: once to learn its encoding and how many
    // units it decodes to, then piece by piece as the parse goes.
    const std::size_t piece = pieceSize.load(std::memory_order_relaxed);
    std::size_t utf8 = 0;
    std::size_t bytes = 0;
    std::size_t nuls = 0;
    bool valid = true;
    bool first = true;
    bool dollar = false;
    {
        Pieces pieces(in.fd, std::max(piece, std::size_t(4096)));
        std::string_view next;
        while (pieces.next(next)) {
            bytes += next.size();
            nuls += nulBytes(next);
            dollar = dollar || next.find('$') != std::string_view::npos;
            std::size_t units = 0;
            valid = valid && keptUtf8Units(next, first, units);
            utf8 += units;
            first = false;
        }
        if (pieces.failed() || ::lseek(in.fd, 0, SEEK_SET) != 0) {
            return nullptr;
        }
    }
    // Mac OS Roman has one BMP character for every byte.
    auto source = std::make_unique<FileSource>(in.fd, piece);
    in.fd = -1;
    source->macRoman = !valid;
    std::unique_ptr<ScriptFileText> result = reserve(valid ? utf8 : bytes - nuls, std::move(source));
    if (result != nullptr) {
        result->holdsDollar_ = dollar;
    }
    return result;
}

std::unique_ptr<ScriptFileText> ScriptFileText::fromUtf8(std::string_view text, std::size_t heldInMemoryBelow)
{
    if (text.size() < heldInMemoryBelow) {
        StringPieces pieces(text, blockBytes);
        return held(text.size(), [&pieces](std::string_view &next) { return pieces.next(next); }, nullptr);
    }
    // The units are counted first: well-formed pieces by their bytes, the
    // others (with U+FFFD where a sequence breaks) by decoding them aside.
    const std::size_t piece = pieceSize.load(std::memory_order_relaxed);
    std::size_t units = 0;
    std::u16string aside;
    bool first = true;
    StringPieces pieces(text, std::max(piece, std::size_t(4096)));
    std::string_view next;
    while (pieces.next(next)) {
        std::size_t kept = 0;
        if (keptUtf8Units(next, first, kept)) {
            units += kept;
        } else {
            aside.resize(next.size());
            char16_t *end = aside.data() + utf8ToUtf16(next, aside.data());
            const char16_t *begin = keepScriptUnits(aside.data(), end, first, next);
            units += static_cast<std::size_t>(end - begin);
        }
        first = false;
    }
    std::unique_ptr<ScriptFileText> result = reserve(units, std::make_unique<StringSource>(text, piece));
    if (result != nullptr) {
        result->holdsDollar_ = text.find('$') != std::string_view::npos;
    }
    return result;
}

std::unique_ptr<ScriptFileText> ScriptFileText::held(std::size_t capacity,
                                                     const std::function<bool(std::string_view &)> &nextPiece,
                                                     const std::function<bool()> &restart)
{
    std::unique_ptr<ScriptFileText> result(new ScriptFileText);
    result->inMemory_ = true;
    if (capacity == 0) {
        return result;
    }
    void *const mapping =
        ::mmap(nullptr, capacity * sizeof(char16_t), PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapping == MAP_FAILED) {
        return nullptr;
    }
    result->data_ = static_cast<char16_t *>(mapping);
    result->mapped_ = capacity * sizeof(char16_t);
    const std::size_t used = decodeWhole(result->data_, capacity, nextPiece, restart);
    if (used == SIZE_MAX) {
        return nullptr;
    }
    result->size_ = used;
    result->decoded_ = used;
    return result;
}

std::unique_ptr<ScriptFileText> ScriptFileText::reserve(std::size_t units, std::unique_ptr<Source> source)
{
    std::unique_ptr<ScriptFileText> result(new ScriptFileText);
    if (units != 0) {
        // Only addresses: a page is made when a piece is decoded into it.
        void *const mapping = ::mmap(nullptr, units * sizeof(char16_t), PROT_READ | PROT_WRITE,
                                     MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        if (mapping == MAP_FAILED) {
            return nullptr;
        }
        result->data_ = static_cast<char16_t *>(mapping);
        result->mapped_ = units * sizeof(char16_t);
        result->size_ = units;
        result->source_ = std::move(source);
    }
    return result;
}

ScriptFileText::~ScriptFileText()
{
    if (mapped_ != 0) {
        ::munmap(data_, mapped_);
    }
}

const char16_t *ScriptFileText::decodeTo(const char16_t *upTo)
{
    // At the counted end, one more piece tells whether the text ends there.
    while (source_ != nullptr && (data_ + decoded_ < upTo || decoded_ == size_)) {
        decodePiece();
    }
    return data_ + decoded_;
}

void ScriptFileText::decodePiece()
{
    std::string_view piece;
    if (!source_->next(piece)) {
        source_.reset();
        return;
    }
    std::string converted;
    const std::string_view bytes = source_->macRoman ? std::string_view(converted = macRomanToUtf8(piece)) : piece;
    const std::size_t room = size_ - decoded_;
    char16_t *const at = data_ + decoded_;
    char16_t *text = at;
    if (bytes.size() > room) {
        aside_.resize(bytes.size());
        text = aside_.data();
    }
    char16_t *textEnd = text + utf8ToUtf16(bytes, text);
    text = keepScriptUnits(text, textEnd, first_, bytes);
    first_ = false;
    auto count = static_cast<std::size_t>(textEnd - text);
    if (count > room) {
        // The file grew since its units were counted: the text ends where
        // its places do.
        count = room;
        source_.reset();
    }
    if (text != at) {
        std::memmove(at, text, count * sizeof(char16_t));
    }
    decoded_ += count;
}

void ScriptFileText::releaseBefore(const char16_t *before)
{
    if (!inMemory_ && before >= data_ &&
        static_cast<std::size_t>(before - data_) * sizeof(char16_t) >=
            released_ + releaseSize.load(std::memory_order_relaxed)) {
        releaseAllBefore(before);
    }
}

void ScriptFileText::releaseAllBefore(const char16_t *before)
{
    if (inMemory_ || mapped_ == 0 || before < data_) {
        return;
    }
    const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    const std::size_t offset =
        std::min(static_cast<std::size_t>(before - data_), decoded_) * sizeof(char16_t);
    const std::size_t upTo = offset / page * page;
    if (upTo <= released_) {
        return;
    }
    // The pages are moved on to where the next pieces will be decoded, so
    // that the decoding writes into pages already made instead of faulting
    // in fresh zero-filled ones; their places behind get new, empty
    // addresses. What does not fit ahead is given back.
    char *const base = reinterpret_cast<char *>(data_);
    std::size_t moved = 0;
    const std::size_t ahead = (decoded_ * sizeof(char16_t) + page - 1) / page * page;
    if (ahead < mapped_ && ahead >= upTo) {
        const std::size_t length = std::min(upTo - released_, mapped_ - ahead);
        if (::mremap(base + released_, length, length, MREMAP_MAYMOVE | MREMAP_FIXED, base + ahead) != MAP_FAILED) {
            if (::mmap(base + released_, length, PROT_READ | PROT_WRITE,
                       MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE | MAP_FIXED, -1, 0) != MAP_FAILED) {
                moved = length;
            } else {
                // No new addresses behind (the process's limit of mappings):
                // the pages go back where they were, and are given back below.
                ::mremap(base + ahead, length, length, MREMAP_MAYMOVE | MREMAP_FIXED, base + released_);
            }
        }
    }
    if (released_ + moved < upTo) {
        ::madvise(base + released_ + moved, upTo - released_ - moved, MADV_DONTNEED);
    }
    released_ = upTo;
}

} // namespace sqlantlr

bool kp_moreText(pANTLR3_INPUT_STREAM input, const char16_t *wanted)
{
    auto *feed = static_cast<sqlantlr::TextFeed *>(input->super);
    if (feed == nullptr || feed->text->complete()) {
        return false;
    }
    const auto *data = static_cast<const char16_t *>(input->data);
    const std::size_t readable = input->sizeBuf / sizeof(char16_t);
    if (readable >= feed->windowUnits) {
        return false;
    }
    // At least one more piece, and up to what the reader asks for.
    const char16_t *want = std::max(wanted, data + readable + 1);
    const char16_t *decoded = feed->text->decodeTo(want);
    const std::size_t units = std::min(static_cast<std::size_t>(decoded - data), feed->windowUnits);
    if (units <= readable) {
        return false;
    }
    input->sizeBuf = static_cast<ANTLR3_UINT32>(units * sizeof(char16_t));
    return true;
}
