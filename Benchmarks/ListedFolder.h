#pragma once

/// An open folder whose names are read once, with the fewest system calls that the system offers for it. A
/// thread reads one folder to its end before it starts on the next.
class ListedFolder {
public:
    /// Opens `name` inside the open folder `parent` (AT_FDCWD for a path by itself); a link is refused.
    ListedFolder(int parent, const char *name);
    ~ListedFolder();
    ListedFolder(const ListedFolder &) = delete;
    ListedFolder &operator=(const ListedFolder &) = delete;

    /// Below 0, with errno set, when it could not be opened.
    [[nodiscard]] int descriptor() const { return descriptor_; }

    /// The next name; null at the end. Valid until the next call.
    [[nodiscard]] const char *nextName();

private:
    int descriptor_;
    void *stream_ = nullptr; ///< where names come from the C library
    long next_ = 0;          ///< where they come straight from the system: the bytes handed out
    long length_ = 0;        ///< and those received
};
