#include "platform/folder_listings.hpp"

#include <cerrno>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <unordered_map>

#include "platform/host_files.hpp"
#include "platform/host_path.hpp"

namespace ravelo::platform {
namespace {

// At most this many listings are kept; beyond it all are dropped (a job
// works in a few folders at a time).
constexpr std::size_t kMaxListings = 16;
// Only folders of at least this many entries are kept: a small folder is
// read again at little cost, and is then certain to be current even on a
// host whose folder times are too coarse to tell two changes in a row apart.
constexpr std::size_t kMinEntries = 256;

std::string Folded(std::string_view name) {
    std::string out(name);
    for (char& c : out)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return out;
}

// What tells one state of a folder from another, as bytes that compare
// whole; empty when the folder cannot be looked at.
std::string StampOf(const std::string& folder) {
    host::Status st;
    if (folder.find('\0') != std::string::npos || !host::GetStatus(folder, st) || st.kind != host::Kind::Folder)
        return {};
    const long long fields[] = {static_cast<long long>(st.device), static_cast<long long>(st.node),
                                static_cast<long long>(st.modified), static_cast<long long>(st.changed)};
    return std::string(reinterpret_cast<const char*>(fields), sizeof fields);
}

struct Listing {
    std::string stamp;
    // Lower-case name -> the entries with that name in any case, in byte order.
    std::unordered_map<std::string, std::set<std::string>> names;
    std::size_t count = 0;  // entries

    std::optional<std::string> Find(std::string_view name) const {
        const auto it = names.find(Folded(name));
        if (it == names.end()) return std::nullopt;
        return *it->second.begin();
    }
    void Add(const std::string& name) {
        if (names[Folded(name)].insert(name).second) ++count;
    }
    void Remove(const std::string& name) {
        const auto it = names.find(Folded(name));
        if (it == names.end() || it->second.erase(name) == 0) return;
        --count;
        if (it->second.empty()) names.erase(it);
    }
};

class Listings {
public:
    std::optional<std::string> Find(const std::string& folder, std::string_view name) {
        std::lock_guard lock(mutex_);
        const std::string stamp = StampOf(folder);
        if (stamp.empty()) {
            listings_.erase(folder);
            return std::nullopt;
        }
        auto it = listings_.find(folder);
        if (it != listings_.end() && it->second.stamp == stamp) return it->second.Find(name);
        listings_.erase(folder);
        Listing listing = Read(folder, stamp);
        std::optional<std::string> found = listing.Find(name);
        if (listing.count >= kMinEntries) {
            if (listings_.size() >= kMaxListings) listings_.clear();
            listings_.emplace(folder, std::move(listing));
        }
        return found;
    }

    std::string StampIfListed(const std::string& folder) {
        std::lock_guard lock(mutex_);
        const auto it = listings_.find(folder);
        if (it == listings_.end()) return {};
        const std::string stamp = StampOf(folder);
        return stamp == it->second.stamp ? stamp : std::string();
    }

    // Applies a change made when the folder's stamp was `before`; a listing
    // that was not current then is dropped.
    void Apply(const std::string& folder, const std::string& before, const std::string* removed,
               const std::string* added) {
        std::lock_guard lock(mutex_);
        const auto it = listings_.find(folder);
        if (it == listings_.end()) return;
        if (before.empty() || it->second.stamp != before) {
            listings_.erase(it);
            return;
        }
        if (removed != nullptr) it->second.Remove(*removed);
        if (added != nullptr) it->second.Add(*added);
        it->second.stamp = StampOf(folder);
        if (it->second.stamp.empty()) listings_.erase(it);
    }

    void Drop(const std::string& folder) {
        std::lock_guard lock(mutex_);
        listings_.erase(folder);
    }

private:
    using Map = std::map<std::string, Listing>;

    static Listing Read(const std::string& folder, const std::string& stamp) {
        Listing listing;
        // Taken before the reading: a change while reading shows next time.
        listing.stamp = stamp;
        std::vector<host::Entry> entries;
        host::ListFolder(folder, entries);
        for (const host::Entry& entry : entries) listing.Add(entry.name);
        return listing;
    }

    std::mutex mutex_;
    Map listings_;
};

Listings& TheListings() {
    static Listings listings;
    return listings;
}

}  // namespace

std::optional<std::string> FindNoCase(const std::string& folder, std::string_view name) {
    return TheListings().Find(folder, name);
}

ListingsUpdate::ListingsUpdate(std::string removed, std::string added)
    : removed_(std::move(removed)), added_(std::move(added)) {
    const int saved = errno;
    if (!removed_.empty()) removedBefore_ = TheListings().StampIfListed(Parent(removed_));
    if (!added_.empty()) addedBefore_ = TheListings().StampIfListed(Parent(added_));
    errno = saved;
}

void ListingsUpdate::Done(bool happened) {
    const int saved = errno;
    done_ = true;
    const std::string removedFolder = Parent(removed_), removedName = BaseName(removed_);
    const std::string addedFolder = Parent(added_), addedName = BaseName(added_);
    const bool oneFolder = !removed_.empty() && !added_.empty() && removedFolder == addedFolder;
    if (oneFolder) {
        TheListings().Apply(addedFolder, addedBefore_, happened ? &removedName : nullptr,
                            happened ? &addedName : nullptr);
    } else {
        if (!removed_.empty())
            TheListings().Apply(removedFolder, removedBefore_, happened ? &removedName : nullptr, nullptr);
        if (!added_.empty())
            TheListings().Apply(addedFolder, addedBefore_, nullptr, happened ? &addedName : nullptr);
    }
    errno = saved;
}

ListingsUpdate::~ListingsUpdate() {
    if (done_) return;
    const int saved = errno;
    if (!removed_.empty()) TheListings().Drop(Parent(removed_));
    if (!added_.empty()) TheListings().Drop(Parent(added_));
    errno = saved;
}

}  // namespace ravelo::platform
