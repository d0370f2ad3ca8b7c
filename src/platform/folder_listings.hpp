// The names of folders looked through for a name in another case, kept while
// each folder is unchanged. A name that is not on the host as written needs
// its whole folder read to learn that no other case of it is there either;
// a job that makes a thousand new files in one folder (a library divided
// into its entries) would read that growing folder a thousand times.
//
// A listing is used only while the folder's stamp (its inode, modification
// and change times) is what it was when the listing was taken or last
// brought up to date. This program's own changes to a folder are made
// through an Update, which applies them to the listing and takes the new
// stamp; a change by any other program changes the stamp, and the folder is
// read again. Only large folders are kept (see kMinEntries): where folder
// times are coarse, another program's change in the same tick as this
// program's last one could go unseen until the folder changes again, and a
// large folder is where the saving is worth that.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ravelo::platform {

// The entry of the host folder `folder` equal to `name` in any case; when
// several are, the first in byte order. None when there is none or the
// folder cannot be read.
std::optional<std::string> FindNoCase(const std::string& folder, std::string_view name);

// One change of the entries of host folders by this program: `removed` goes
// and `added` appears (host paths, either may be empty). Constructed just
// before the change, Done() just after it with whether it happened; the
// value of errno is kept. Left without Done() (the change threw), the
// listings of both folders are dropped.
class ListingsUpdate {
public:
    ListingsUpdate(std::string removed, std::string added);
    ~ListingsUpdate();
    ListingsUpdate(const ListingsUpdate&) = delete;
    ListingsUpdate& operator=(const ListingsUpdate&) = delete;

    void Done(bool happened);

private:
    std::string removed_, added_;
    // The folders' stamps before the change, packed by the implementation.
    std::string removedBefore_, addedBefore_;
    bool done_ = false;
};

}  // namespace ravelo::platform
