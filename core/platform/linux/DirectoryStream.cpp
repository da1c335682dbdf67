#include "core/platform/DirectoryStream.h"

#include "core/platform/posix/PlainEntries.h"

#include <fcntl.h>

#include <cerrno>

namespace tidewright {

namespace {

FileDescriptor openFolder(int parent, const char* path, Links links) {
    const int flags =
        O_RDONLY | O_DIRECTORY | O_CLOEXEC | (links == Links::dontFollow ? O_NOFOLLOW : 0);
    FileDescriptor folder(openat(parent, path, flags | O_NOATIME));
    if (folder || errno != EPERM) // EPERM: O_NOATIME is for the owner alone
        return folder;
    return FileDescriptor(openat(parent, path, flags));
}

} // namespace

struct DirectoryStream::State {
    PlainEntries entries;
};

DirectoryStream::DirectoryStream(std::unique_ptr<State> state) : m_state(std::move(state)) {}
DirectoryStream::~DirectoryStream() = default;
DirectoryStream::DirectoryStream(DirectoryStream&&) noexcept = default;

DirectoryStream DirectoryStream::open(int parent, const char* path, Links links) {
    PlainEntries entries(openFolder(parent, path, links));
    if (!entries)
        return DirectoryStream(nullptr);
    return DirectoryStream(std::make_unique<State>(State{std::move(entries)}));
}

int DirectoryStream::descriptor() const { return m_state->entries.descriptor(); }

std::optional<StreamEntry> DirectoryStream::next() { return m_state->entries.next(); }

} // namespace tidewright
