#include "ScriptFileText.h"

#include "TextEncoding.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <filesystem>
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

// A string is decoded in pieces of this much; a file is read in blocks of
// readBytes into one buffer that every read reuses, so that reading touches
// few fresh pages.
constexpr std::size_t blockBytes = 1U << 20U;
constexpr std::size_t readBytes = 256U << 10U;
// Dropping pages costs a system call and the faults of any page read again:
// it is done once this much has been passed.
constexpr std::size_t releaseStep = 8U << 20U;

// A file descriptor closed on every path.
struct Descriptor {
    int fd = -1;
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
    explicit Pieces(int fd) : fd_(fd) {}

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
            reserve(have_ + readBytes);
            const ssize_t got = ::read(fd_, buffer_.get() + have_, readBytes);
            if (got < 0) {
                failed_ = true;
                return false;
            }
            if (got == 0) {
                piece = std::string_view(buffer_.get(), have_);
                taken_ = have_;
                return have_ != 0;
            }
            have_ += static_cast<std::size_t>(got);
            std::size_t cut = have_;
            while (cut > 0 && static_cast<unsigned char>(buffer_[cut - 1]) >= 0x80) {
                --cut;
            }
            if (cut > 0) {
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
    std::unique_ptr<char[]> buffer_;
    std::size_t capacity_ = 0;
    std::size_t have_ = 0;   // bytes read and not yet handed out
    std::size_t taken_ = 0;  // bytes of the piece handed out last
    bool failed_ = false;
};

std::atomic<std::size_t> heldBelow{ScriptFileText::defaultHeldInMemoryBelow};

} // namespace

std::size_t ScriptFileText::heldInMemoryBelow()
{
    return heldBelow.load(std::memory_order_relaxed);
}

void ScriptFileText::setHeldInMemoryBelow(std::size_t bytes)
{
    heldBelow.store(bytes, std::memory_order_relaxed);
}

std::unique_ptr<ScriptFileText> ScriptFileText::open(const std::string &path, std::size_t heldInMemoryBelow)
{
    Descriptor in{::open(path.c_str(), O_RDONLY | O_CLOEXEC)};
    struct stat status {};
    if (in.fd < 0 || ::fstat(in.fd, &status) != 0 || !S_ISREG(status.st_mode)) {
        return nullptr;
    }
    unsigned char head[2] = {0, 0};
    if (::pread(in.fd, head, 2, 0) == 2 && ((head[0] == 0xFF && head[1] == 0xFE) || (head[0] == 0xFE && head[1] == 0xFF))) {
        return nullptr;
    }
    // The file is read once when it is UTF-8, which nearly every script is;
    // at its first piece that is not, it is read again as Mac OS Roman.
    Pieces pieces(in.fd);
    std::unique_ptr<ScriptFileText> result = decode(
        static_cast<std::size_t>(status.st_size), [&pieces](std::string_view &next) { return pieces.next(next); },
        [&pieces] { return pieces.rewind(); }, heldInMemoryBelow);
    return pieces.failed() ? nullptr : std::move(result);
}

std::unique_ptr<ScriptFileText> ScriptFileText::fromUtf8(std::string_view text, std::size_t heldInMemoryBelow)
{
    // Pieces end just after an ASCII byte, as a file's do.
    std::string_view rest = text;
    const auto next = [&rest](std::string_view &piece) {
        if (rest.empty()) {
            return false;
        }
        std::size_t cut = std::min(rest.size(), blockBytes);
        while (cut < rest.size() && static_cast<unsigned char>(rest[cut - 1]) >= 0x80) {
            ++cut;
        }
        piece = rest.substr(0, cut);
        rest.remove_prefix(cut);
        return true;
    };
    return decode(text.size(), next, nullptr, heldInMemoryBelow);
}

namespace {

// Where the decoded text goes: anonymous memory, or the pages of an
// unlinked temporary file through a shared mapping (no copy through
// write()), left open in `file`. Room for a unit per byte, which no
// decoding exceeds.
void *mapRoom(std::size_t room, bool inMemory, Descriptor &file)
{
    if (inMemory) {
        void *const mapping = ::mmap(nullptr, room, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        return mapping == MAP_FAILED ? nullptr : mapping;
    }
    // Without a usable temporary directory the text is held in memory by
    // the caller instead.
    std::error_code noDirectory;
    const std::filesystem::path directory = std::filesystem::temp_directory_path(noDirectory);
    if (noDirectory) {
        return nullptr;
    }
    std::string name = (directory / "sqlantlr-text-XXXXXX").string();
    file.fd = ::mkstemp(name.data());
    if (file.fd < 0) {
        return nullptr;
    }
    ::unlink(name.c_str());  // gone with the mapping
    // The room is allocated on the disk first: a page of a shared mapping
    // that the file system cannot store would stop the process with SIGBUS
    // where write() would have failed. (A file system that cannot allocate
    // ahead has it written block by block.) Without the room, on a full
    // disk, the text is held in memory.
    if (::posix_fallocate(file.fd, 0, static_cast<off_t>(room)) != 0) {
        return nullptr;
    }
    void *const mapping = ::mmap(nullptr, room, PROT_READ | PROT_WRITE, MAP_SHARED, file.fd, 0);
    return mapping == MAP_FAILED ? nullptr : mapping;
}

} // namespace

std::unique_ptr<ScriptFileText> ScriptFileText::decode(std::size_t capacity,
                                                       const std::function<bool(std::string_view &)> &nextPiece,
                                                       const std::function<bool()> &restart,
                                                       std::size_t heldInMemoryBelow)
{
    std::unique_ptr<ScriptFileText> result(new ScriptFileText);
    result->inMemory_ = capacity < heldInMemoryBelow;
    if (capacity == 0) {
        return result;
    }
    const std::size_t room = capacity * sizeof(char16_t);
    Descriptor file;
    void *const mapping = mapRoom(room, result->inMemory_, file);
    if (mapping == nullptr) {
        return nullptr;
    }
    // Owned by result from here on, so that every failure unmaps it.
    auto *const units = static_cast<char16_t *>(mapping);
    result->data_ = units;
    result->mapped_ = room;
    const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    bool utf8 = true;
    std::size_t used = 0;
    std::size_t released = 0;  // bytes from the start already dropped from memory
    bool first = true;
    // A piece whose decoding needs more room than is left (Mac OS Roman,
    // converted through UTF-8) is decoded aside first.
    std::unique_ptr<char16_t[]> aside;
    std::size_t asideRoom = 0;
    std::string_view piece;
    while (nextPiece(piece)) {
        if (utf8 && restart && !isValidUtf8(piece)) {
            // The encoding holds for the whole file: decoded again from its start.
            if (!restart()) {
                return nullptr;
            }
            utf8 = false;
            used = 0;
            released = 0;
            first = true;
            continue;
        }
        std::string converted;
        const std::string_view bytes = utf8 ? piece : std::string_view(converted = macRomanToUtf8(piece));
        char16_t *const at = units + used;
        char16_t *text = at;
        if (bytes.size() > capacity - used) {
            if (bytes.size() > asideRoom) {
                asideRoom = std::max(bytes.size(), 2 * asideRoom);
                aside.reset(new char16_t[asideRoom]);
            }
            text = aside.get();
        }
        char16_t *textEnd = text + utf8ToUtf16(bytes, text);
        text = keepScriptUnits(text, textEnd, first, bytes);  // as a string's units are kept
        first = false;
        const auto count = static_cast<std::size_t>(textEnd - text);
        if (count > capacity - used) {
            return nullptr;  // a file that grew while it was read: it is read whole instead
        }
        if (text != at) {
            std::memmove(at, text, count * sizeof(char16_t));
        }
        used += count;
        // Decoded pages in a file leave the process's memory as the parse's
        // do: they stay in the file and are read back when the parse gets
        // there.
        const std::size_t decodedPages = used * sizeof(char16_t) / page * page;
        if (!result->inMemory_ && decodedPages > released) {
            ::madvise(static_cast<char *>(mapping) + released, decodedPages - released, MADV_DONTNEED);
            released = decodedPages;
        }
    }
    // The pages past the text are unmapped (and cut from the file); the
    // rest stays mapped, read-only.
    const std::size_t kept = (used * sizeof(char16_t) + page - 1) / page * page;
    if (kept < room) {
        ::munmap(reinterpret_cast<char *>(mapping) + kept, room - kept);
        result->mapped_ = kept;
        if (kept == 0) {
            result->data_ = nullptr;
        }
    }
    if ((file.fd >= 0 && ::ftruncate(file.fd, static_cast<off_t>(used * sizeof(char16_t))) != 0) ||
        (kept != 0 && ::mprotect(mapping, kept, PROT_READ) != 0)) {
        return nullptr;
    }
    result->size_ = used;
    return result;
}

ScriptFileText::~ScriptFileText()
{
    if (mapped_ != 0) {
        ::munmap(const_cast<char16_t *>(data_), mapped_);
    }
}

void ScriptFileText::releaseBefore(const char16_t *before)
{
    if (!inMemory_ && before >= data_ && static_cast<std::size_t>(before - data_) * sizeof(char16_t) >= released_ + releaseStep) {
        releaseAllBefore(before);
    }
}

void ScriptFileText::releaseAllBefore(const char16_t *before)
{
    if (inMemory_ || mapped_ == 0 || before < data_) {
        return;
    }
    const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    const std::size_t offset = std::min(static_cast<std::size_t>(before - data_) * sizeof(char16_t), mapped_);
    const std::size_t upTo = offset / page * page;
    if (upTo > released_) {
        // The mapping is shared and read-only: the pages come back from the file.
        ::madvise(const_cast<char *>(reinterpret_cast<const char *>(data_)) + released_, upTo - released_,
                  MADV_DONTNEED);
        released_ = upTo;
    }
}

} // namespace sqlantlr
