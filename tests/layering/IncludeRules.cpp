#include "tests/layering/IncludeRules.h"

#include <algorithm>
#include <initializer_list>

namespace Layering {

namespace {

/// What the sources of a folder may include besides each other. An entry is a folder, and means the files
/// right in it and below it unless these belong to another layer, or it is a single header.
struct Layer {
    std::string_view folder;
    std::vector<std::string_view> mayInclude;
    /// Of the library's layers only what is installed.
    bool publicHeadersOnly = false;
};

constexpr std::string_view portFolder = "tessera/platform/port";
constexpr std::string_view toolPortFolder = "tools/tessera/port";
constexpr std::string_view platformFolder = "tessera/platform";
constexpr std::string_view exportHeader = "tessera/Export.h";  // made by the build

const std::vector<Layer>& layers() {
    static const std::vector<Layer> table = {
        // The scalar types and result codes are plain names that even the port speaks in.
        {portFolder, {"tessera/platform/base/Types.h", "tessera/platform/base/Results.h"}},
        {"tessera/platform/base", {portFolder}},
        {"tessera/platform/engine", {"tessera/platform/base", portFolder}},
        {"tessera/platform/windows", {"tessera/platform/base", portFolder}},
        {"tessera/platform/objectstore",
         {"tessera/platform/engine", "tessera/platform/windows", "tessera/platform/base", portFolder}},
        {"tessera/platform/contacts", {"tessera/platform/objectstore", "tessera/platform/base"}},
        {"tessera/common", {"tessera/platform/base"}},
        {"tessera/database/schema", {platformFolder}},
        {"tessera/phonebook/model", {"tessera/database/schema", "tessera/common", platformFolder}},
        // Below, a layer's own folder does not stand for the layers inside it, so these are named.
        {"tessera/database", {"tessera/phonebook/model", "tessera/database/schema", "tessera/common", platformFolder}},
        {"tessera/phonebook",
         {"tessera/database", "tessera/phonebook/model", "tessera/database/schema", "tessera/common", platformFolder}},
        {toolPortFolder, {portFolder}, true},  // the platform's character, which is installed
        {"tools", {"tessera", toolPortFolder}, true},
        {"examples", {"tessera"}, true},
    };
    return table;
}

/// Where headers that are neither ours nor the standard library's may be included.
struct Foreign {
    std::string_view prefix;
    std::string_view folder;
    bool privateFilesOnly;
};

constexpr Foreign foreignHeaders[] = {
    {"sqlite3.h", platformFolder, true},
    {"unicode/", platformFolder, true},
    {"unicode/", toolPortFolder, true},
    {"csv.h", "tools/tessera/exchange", false},
    {"CLI/", "tools", false},
    {"nlohmann/", "tools", false},
    {"", portFolder, true},  // the operating system's
    {"", toolPortFolder, true},
    {"", "examples", false},
};

bool isBelow(std::string_view file, std::string_view folder) {
    return file == folder || (file.starts_with(folder) && file[folder.size()] == '/');
}

const Layer* layerHolding(std::string_view file) {
    const Layer* holding = nullptr;
    for (const Layer& layer : layers()) {
        if (!isBelow(file, layer.folder)) continue;
        if (holding == nullptr || layer.folder.size() > holding->folder.size()) holding = &layer;
    }
    return holding;
}

bool isInstalled(const std::string& header, const std::set<std::string>& installedHeaders) {
    return header == exportHeader || installedHeaders.contains(header);
}

/// A folder of `mayInclude` covers the layers of the platform and of the whole library; the folder of one
/// layer covers just that layer.
bool covers(std::string_view allowed, std::string_view header) {
    if (!isBelow(header, allowed)) return false;
    const bool isOneLayer =
        std::ranges::any_of(layers(), [allowed](const Layer& layer) { return layer.folder == allowed; });
    return !isOneLayer || layerOf(header) == allowed;
}

std::string at(const std::string& file, int line) {
    return file + ":" + std::to_string(line) + ": ";
}

std::string objectionToOurs(const Include& include, const std::set<std::string>& installedHeaders) {
    const std::string place = at(include.file, include.line);
    if (include.target == exportHeader) return "";
    if (!include.isFound) return place + "there is no header " + include.target;

    const Layer* from = layerHolding(include.file);
    if (from == nullptr) return place + "this folder is not in the table of layers";
    const bool isInstalledHere = isInstalled(include.file, installedHeaders);
    if (isInstalledHere && !isInstalled(include.target, installedHeaders))
        return place + "an installed header includes " + include.target + ", which is not installed";
    if (layerOf(include.target) == from->folder) return "";

    const bool isAllowed = std::ranges::any_of(
        from->mayInclude, [&](std::string_view allowed) { return covers(allowed, include.target); });
    if (!isAllowed) return place + std::string(from->folder) + " may not include " + include.target;
    // Above the platform nothing of it is seen but what everyone sees.
    const bool needsPublic = (from->publicHeadersOnly && isBelow(include.target, "tessera")) ||
                             (!isBelow(include.file, platformFolder) && isBelow(include.target, platformFolder));
    if (needsPublic && !isInstalled(include.target, installedHeaders))
        return place + include.target + " is private to its layer";
    return "";
}

std::string objectionToForeign(const Include& include, const std::set<std::string>& installedHeaders) {
    // The standard library's names have neither a dot nor a slash.
    if (include.target.find_first_of("./") == std::string::npos) return "";
    const bool isPrivate = !isInstalled(include.file, installedHeaders);
    const bool isNamed = std::ranges::any_of(foreignHeaders, [&](const Foreign& foreign) {
        return !foreign.prefix.empty() && include.target.starts_with(foreign.prefix);
    });
    for (const Foreign& foreign : foreignHeaders) {
        const bool isMeant =
            isNamed ? !foreign.prefix.empty() && include.target.starts_with(foreign.prefix) : foreign.prefix.empty();
        if (isMeant && isBelow(include.file, foreign.folder) && (isPrivate || !foreign.privateFilesOnly)) return "";
    }
    return at(include.file, include.line) + "<" + include.target + "> may not be included here";
}

}  // namespace

std::string_view layerOf(std::string_view file) {
    const Layer* layer = layerHolding(file);
    return layer == nullptr ? std::string_view() : layer->folder;
}

std::string objectionTo(const Include& include, const std::set<std::string>& installedHeaders) {
    return include.isOurs ? objectionToOurs(include, installedHeaders) : objectionToForeign(include, installedHeaders);
}

std::string objectionTo(const SystemCondition& condition) {
    if (isBelow(condition.file, portFolder) || isBelow(condition.file, toolPortFolder)) return "";
    return at(condition.file, condition.line) + "asks for " + condition.macro + " outside of the ports";
}

}  // namespace Layering
