#include "library_fault.h"

#include <algorithm>
#include <filesystem>
#include <set>

#include "image.h"
#include "os/path.h"

namespace os {
namespace {

namespace fs = std::filesystem;

bool is_there(const std::string& file) {
    std::error_code ignored;
    return fs::exists(fs::path(native_path(file)), ignored);
}

class Search {
public:
    using Find = std::function<std::string(const std::string& name)>;

    Search(const ImageKind& wanted, const Find& find) : m_wanted(wanted), m_find(find) {}

    std::string fault(const std::string& file) {
        if (!m_seen.insert(file).second) return "";
        const std::string wrong = fault_of_kind(file);
        if (!wrong.empty()) return wrong;
        for (const ImageImport& import : image_imports(file)) {
            const std::string found = fault_of(import, file);
            if (!found.empty()) return found;
        }
        return "";
    }

private:
    // The system makes these up.
    static bool is_made_up(const std::string& library) {
        return library.starts_with("api-ms-") || library.starts_with("ext-ms-");
    }

    std::string fault_of_kind(const std::string& file) const {
        const ImageKind kind = image_kind(file);
        return kind.runs_with(m_wanted) ? "" : file + " is " + kind.text + "; wanted is " + m_wanted.text;
    }

    std::string fault_of(const ImageImport& import, const std::string& user) {
        if (is_made_up(import.library)) return "";
        const std::string beside = user.substr(0, user.find_last_of("/\\") + 1) + import.library;
        const bool is_beside = is_there(beside);
        const std::string file = is_beside ? beside : m_find(import.library);
        if (file.empty()) return import.library + ", which " + user + " needs, is missing";
        const std::string wrong = fault_of_kind(file);
        if (!wrong.empty()) return wrong;
        const std::vector<std::string> offered = image_exports(file);
        const std::set<std::string> names(offered.begin(), offered.end());
        for (const std::string& name : import.names)
            if (!names.contains(name)) return file + " lacks " + name + ", which " + user + " needs";
        // The system's own are taken to be whole.
        return is_beside ? fault(file) : "";
    }

    const ImageKind m_wanted;
    const Find& m_find;
    std::set<std::string> m_seen;
};

}  // namespace

std::string library_fault(const std::string& file, const std::string& program,
                          const std::function<std::string(const std::string& name)>& find) {
    if (!is_there(file)) return "";
    const ImageKind wanted = image_kind(program);
    return wanted.system.empty() ? "" : Search(wanted, find).fault(file);
}

}  // namespace os
