#include "core/platform/DirectoryStream.h"

#include "core/platform/posix/PlainEntries.h"

#include <fcntl.h>
#include <sys/attr.h>
#include <sys/vnode.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace tidewright {

namespace {

constexpr std::size_t bufferBytes = 64 * 1024;
constexpr std::uint64_t bytesPerBlock = 512; // the unit of st_blocks

constexpr attrlist wantedAttributes = {
    .bitmapcount = ATTR_BIT_MAP_COUNT,
    .commonattr = ATTR_CMN_RETURNED_ATTRS | ATTR_CMN_ERROR | ATTR_CMN_NAME | ATTR_CMN_OBJTYPE |
                  ATTR_CMN_FILEID,
    .fileattr = ATTR_FILE_LINKCOUNT | ATTR_FILE_ALLOCSIZE,
};

FileKind kindOf(fsobj_type_t type) {
    switch (type) {
    case VREG:
        return FileKind::regular;
    case VDIR:
        return FileKind::directory;
    case VLNK:
        return FileKind::symbolicLink;
    default:
        return FileKind::other;
    }
}

/// The values of one entry, packed without regard to alignment and in the order that the manual
/// page of getattrlistbulk gives: which are there and the error first, then by group and bit.
class EntryReader {
public:
    explicit EntryReader(const std::byte* position) : m_position(position) {}

    const std::byte* position() const { return m_position; }

    template <class T>
    T take() {
        T value;
        std::memcpy(&value, m_position, sizeof value);
        m_position += sizeof value;
        return value;
    }

    /// The value when `bit` says that it is there, else a value of zeros.
    template <class T>
    T takeIf(attrgroup_t bit) {
        return bit != 0 ? take<T>() : T{};
    }

private:
    const std::byte* m_position;
};

StreamEntry parse(const std::byte* position) {
    EntryReader reader(position);
    reader.take<std::uint32_t>(); // the length of the entry
    const auto there = reader.take<attribute_set_t>();
    const auto error = reader.takeIf<std::uint32_t>(there.commonattr & ATTR_CMN_ERROR);

    StreamEntry entry;
    const std::byte* nameBase = reader.position();
    const auto name = reader.take<attrreference_t>();
    entry.name = reinterpret_cast<const char*>(nameBase + name.attr_dataoffset);
    if (error != 0)
        return entry;
    const auto type = reader.takeIf<fsobj_type_t>(there.commonattr & ATTR_CMN_OBJTYPE);
    const auto inode = reader.takeIf<std::uint64_t>(there.commonattr & ATTR_CMN_FILEID);
    const auto linkCount = reader.takeIf<std::uint32_t>(there.fileattr & ATTR_FILE_LINKCOUNT);
    const auto bytes = reader.takeIf<std::uint64_t>(there.fileattr & ATTR_FILE_ALLOCSIZE);

    if ((there.commonattr & ATTR_CMN_OBJTYPE) != 0)
        entry.kind = kindOf(type);
    if ((there.commonattr & ATTR_CMN_FILEID) != 0 && there.fileattr == wantedAttributes.fileattr) {
        const std::uint64_t blocks = (bytes + bytesPerBlock - 1) / bytesPerBlock;
        entry.facts = EntryFacts{inode, linkCount, static_cast<Int64>(blocks * bytesPerBlock)};
    }
    return entry;
}

} // namespace

struct DirectoryStream::State {
    FileDescriptor folder;
    std::unique_ptr<std::byte[]> buffer;
    const std::byte* entry = nullptr;  ///< the next one in the buffer
    int entriesLeft = 0;               ///< in the buffer
    std::optional<PlainEntries> plain; ///< where entries can't be read in bulk

    /// Reads the next entries into the buffer. When already the first reading fails, the file
    /// system may not offer this, or the folder may be read but not searched: then all are read
    /// plainly.
    void fill() {
        const bool isFirst = buffer == nullptr;
        if (isFirst)
            buffer = std::make_unique_for_overwrite<std::byte[]>(bufferBytes);
        attrlist attributes = wantedAttributes;
        errno = 0;
        const int count = getattrlistbulk(folder.get(), &attributes, buffer.get(), bufferBytes, 0);
        entry = buffer.get();
        entriesLeft = count > 0 ? count : 0;
        if (count >= 0 || !isFirst)
            return;
        PlainEntries entries(FileDescriptor(fcntl(folder.get(), F_DUPFD_CLOEXEC, 0)));
        if (entries)
            plain = std::move(entries);
    }
};

DirectoryStream::DirectoryStream(std::unique_ptr<State> state) : m_state(std::move(state)) {}
DirectoryStream::~DirectoryStream() = default;
DirectoryStream::DirectoryStream(DirectoryStream&&) noexcept = default;

DirectoryStream DirectoryStream::open(int parent, const char* path, Links links) {
    const int flags =
        O_RDONLY | O_DIRECTORY | O_CLOEXEC | (links == Links::dontFollow ? O_NOFOLLOW : 0);
    FileDescriptor folder(openat(parent, path, flags));
    if (!folder)
        return DirectoryStream(nullptr);
    auto state = std::make_unique<State>();
    state->folder = std::move(folder);
    return DirectoryStream(std::move(state));
}

int DirectoryStream::descriptor() const { return m_state->folder.get(); }

std::optional<StreamEntry> DirectoryStream::next() {
    State& state = *m_state;
    if (state.entriesLeft == 0 && !state.plain)
        state.fill();
    if (state.plain)
        return state.plain->next();
    if (state.entriesLeft == 0)
        return std::nullopt;
    const StreamEntry entry = parse(state.entry);
    state.entry += EntryReader(state.entry).take<std::uint32_t>();
    --state.entriesLeft;
    return entry;
}

} // namespace tidewright
