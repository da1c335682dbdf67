#include "core/platform/macos/DirectoryStream.h"

#include <fcntl.h>
#include <sys/attr.h>
#include <sys/vnode.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string_view>

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

std::optional<FileKind> kindOfPlain(std::uint8_t type) {
    switch (type) {
    case DT_UNKNOWN:
        return std::nullopt;
    case DT_REG:
        return FileKind::regular;
    case DT_DIR:
        return FileKind::directory;
    case DT_LNK:
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

DirectoryStream DirectoryStream::open(int parent, const char* path, Links links) {
    const int flags =
        O_RDONLY | O_DIRECTORY | O_CLOEXEC | (links == Links::dontFollow ? O_NOFOLLOW : 0);
    return DirectoryStream(FileDescriptor(openat(parent, path, flags)));
}

std::optional<StreamEntry> DirectoryStream::next() {
    if (m_entriesLeft == 0 && !m_plainStream)
        fill();
    if (m_plainStream)
        return nextOfPlainStream();
    if (m_entriesLeft == 0)
        return std::nullopt;
    const StreamEntry entry = parse(m_entry);
    m_entry += EntryReader(m_entry).take<std::uint32_t>();
    --m_entriesLeft;
    return entry;
}

/// Reads the next entries into the buffer. When already the first reading fails, the file system
/// may not offer this, or the folder may be read but not searched: a plain stream takes over.
void DirectoryStream::fill() {
    const bool isFirst = m_buffer == nullptr;
    if (isFirst)
        m_buffer = std::make_unique_for_overwrite<std::byte[]>(bufferBytes);
    attrlist attributes = wantedAttributes;
    errno = 0;
    const int count = getattrlistbulk(m_folder.get(), &attributes, m_buffer.get(), bufferBytes, 0);
    m_entry = m_buffer.get();
    m_entriesLeft = count > 0 ? count : 0;
    if (count >= 0 || !isFirst)
        return;
    FileDescriptor copy(fcntl(m_folder.get(), F_DUPFD_CLOEXEC, 0));
    m_plainStream.reset(copy ? fdopendir(copy.get()) : nullptr);
    if (m_plainStream)
        copy.release(); // the stream owns it now
}

std::optional<StreamEntry> DirectoryStream::nextOfPlainStream() {
    while (true) {
        errno = 0;
        const dirent* entry = readdir(m_plainStream.get());
        if (entry == nullptr)
            return std::nullopt;
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..")
            return StreamEntry{entry->d_name, kindOfPlain(entry->d_type), std::nullopt};
    }
}

} // namespace tidewright
