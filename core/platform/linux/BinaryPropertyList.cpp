#include "core/platform/linux/BinaryPropertyList.h"

#include <cstdint>

// The format is the one that the comment at the head of CFBinaryPList.c in Apple's open-source Core
// Foundation describes: a magic, the objects, a table of their offsets, and a trailer of 32 bytes.
// All numbers are big-endian. An object begins with a marker byte, its kind in the upper half and a
// count in the lower one; there 15 says that the count follows as an object of its own.

namespace tidewright {

namespace {

constexpr std::string_view magic = "bplist0"; // one digit of the version follows
constexpr std::size_t headerBytes = 8;
constexpr std::size_t trailerBytes = 32;

enum class ObjectKind : std::uint8_t { integer = 0x1, asciiText = 0x5, dictionary = 0xD };

struct Object {
    ObjectKind kind = ObjectKind::integer;
    std::uint64_t count = 0;
    std::uint64_t contents = 0; ///< where what follows marker and count begins
};

bool holds(std::string_view bytes, std::uint64_t at, std::uint64_t length) {
    return at <= bytes.size() && length <= bytes.size() - at;
}

std::optional<std::uint64_t> numberAt(std::string_view bytes,
                                      std::uint64_t at,
                                      std::uint64_t length) {
    if (length == 0 || length > sizeof(std::uint64_t) || !holds(bytes, at, length))
        return std::nullopt;
    std::uint64_t value = 0;
    for (const char byte : bytes.substr(at, length))
        value = value << 8 | static_cast<unsigned char>(byte);
    return value;
}

/// Finds objects. Each count and offset is taken as a claim: nothing is read outside of the bytes.
class Reader {
public:
    /// `bytes` are at least header and trailer.
    explicit Reader(std::string_view bytes) : m_bytes(bytes) {
        const std::string_view trailer = bytes.substr(bytes.size() - trailerBytes);
        m_offsetBytes = numberAt(trailer, 6, 1).value_or(0);
        m_referenceBytes = numberAt(trailer, 7, 1).value_or(0);
        m_topIndex = numberAt(trailer, 16, 8).value_or(0);
        m_offsetTable = numberAt(trailer, 24, 8).value_or(0);
    }

    std::optional<Object> topObject() const { return object(m_topIndex); }

    /// The object that the reference at `index` of those from `references` on names.
    std::optional<Object> referencedObject(std::uint64_t references, std::uint64_t index) const {
        const auto reference = tableEntry(references, index, m_referenceBytes);
        return reference ? object(*reference) : std::nullopt;
    }

    std::optional<std::string_view> text(const Object& object) const {
        if (object.kind != ObjectKind::asciiText || !holds(m_bytes, object.contents, object.count))
            return std::nullopt;
        return m_bytes.substr(object.contents, object.count);
    }

private:
    std::optional<std::uint64_t> tableEntry(std::uint64_t table,
                                            std::uint64_t index,
                                            std::uint64_t entryBytes) const {
        if (table > m_bytes.size() || index > m_bytes.size()) // else the sum could overflow
            return std::nullopt;
        return numberAt(m_bytes, table + index * entryBytes, entryBytes);
    }

    std::optional<Object> object(std::uint64_t index) const {
        const auto offset = tableEntry(m_offsetTable, index, m_offsetBytes);
        const auto marker = offset ? numberAt(m_bytes, *offset, 1) : std::nullopt;
        if (!marker)
            return std::nullopt;
        const Object result{static_cast<ObjectKind>(*marker >> 4), *marker & 0xF, *offset + 1};
        return result.count == 0xF ? withCountBehind(result) : result;
    }

    std::optional<Object> withCountBehind(Object object) const {
        const auto marker = numberAt(m_bytes, object.contents, 1);
        if (!marker || static_cast<ObjectKind>(*marker >> 4) != ObjectKind::integer)
            return std::nullopt;
        const std::uint64_t length = std::uint64_t{1} << (*marker & 0xF);
        const auto count = numberAt(m_bytes, object.contents + 1, length);
        if (!count)
            return std::nullopt;
        return Object{object.kind, *count, object.contents + 1 + length};
    }

    std::string_view m_bytes;
    std::uint64_t m_offsetBytes = 0;
    std::uint64_t m_referenceBytes = 0;
    std::uint64_t m_topIndex = 0;
    std::uint64_t m_offsetTable = 0;
};

} // namespace

bool isBinaryPropertyList(std::string_view bytes) { return bytes.starts_with(magic); }

std::optional<std::string> binaryPropertyListString(std::string_view bytes, std::string_view key) {
    if (!isBinaryPropertyList(bytes) || bytes.size() < headerBytes + trailerBytes)
        return std::nullopt;
    const Reader reader(bytes);
    const auto top = reader.topObject();
    if (!top || top->kind != ObjectKind::dictionary || top->count > bytes.size())
        return std::nullopt;
    // The references to all keys, then as many to their values.
    for (std::uint64_t i = 0; i < top->count; ++i) {
        const auto name = reader.referencedObject(top->contents, i);
        if (!name || reader.text(*name) != key)
            continue;
        const auto value = reader.referencedObject(top->contents, top->count + i);
        const auto text = value ? reader.text(*value) : std::nullopt;
        return text ? std::optional<std::string>(*text) : std::nullopt;
    }
    return std::nullopt;
}

} // namespace tidewright
