// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/Test.h"

#include <filesystem>
#include <fstream>

namespace
{

namespace fs = std::filesystem;

struct Row
{
    std::vector<std::string> folders;
    std::vector<std::string> links;
};

/// The words of a line up to its next bar.
std::vector<std::string> takeWords(std::istream& line)
{
    std::string part;
    std::getline(line, part, '|');
    std::istringstream stream(part);
    return {std::istream_iterator<std::string>(stream), {}};
}

/// The rows as the build declares them: `name|folder folder|row row`, a line each.
std::map<std::string, Row> readRows()
{
    std::map<std::string, Row> rows;
    std::ifstream table(KESTRUNE_ROW_TABLE);
    for (std::string text; std::getline(table, text);) {
        std::istringstream line(text);
        Row& row = rows[takeWords(line).at(0)];
        row.folders = takeWords(line);
        row.links = takeWords(line);
    }
    return rows;
}

void addRowsFrom(const std::map<std::string, Row>& rows, const std::string& name,
                 std::set<std::string>& reached)
{
    if (!reached.insert(name).second)
        return;
    for (const std::string& link : rows.at(name).links)
        addRowsFrom(rows, link, reached);
}

/// The headers that a file includes by quotes, as files of the project; others are left out.
std::vector<fs::path> projectIncludes(const fs::path& file)
{
    const std::string directive = "#include \"";
    const fs::path root = KESTRUNE_SOURCE_ROOT;
    std::vector<fs::path> headers;
    std::ifstream source(file);
    for (std::string line; std::getline(source, line);) {
        if (!line.starts_with(directive))
            continue;
        const std::string header =
            line.substr(directive.size(), line.find('"', directive.size()) - directive.size());
        for (const fs::path& base : {root / "src", root})
            if (fs::exists(base / header))
                headers.push_back(fs::relative(base / header, root));
    }
    return headers;
}

TEST(RowIncludesTest, EveryIncludeStaysInItsRowOrGoesToARowBelow)
{
    const auto rows = readRows();
    ASSERT_GT(rows.size(), 10u) << "no table of rows in " << KESTRUNE_ROW_TABLE;
    std::map<std::string, std::string> rowOfFolder;
    for (const auto& [name, row] : rows)
        for (const std::string& folder : row.folders)
            rowOfFolder[folder] = name;

    std::size_t includes = 0;
    for (const auto& [folder, name] : rowOfFolder) {
        std::set<std::string> allowed;
        addRowsFrom(rows, name, allowed);
        for (const auto& entry : fs::directory_iterator(fs::path(KESTRUNE_SOURCE_ROOT) / folder)) {
            const auto ending = entry.path().extension();
            if (ending != ".h" && ending != ".cpp")
                continue;
            for (const fs::path& header : projectIncludes(entry.path())) {
                ++includes;
                const auto target = rowOfFolder.find(header.parent_path().string());
                EXPECT_TRUE(target == rowOfFolder.end() || allowed.contains(target->second))
                    << entry.path().string() << " includes " << header.string() << ", whose row "
                    << name << " does not link";
            }
        }
    }
    EXPECT_GT(includes, 500u) << "the sources are not where the table says";
}

}  // namespace
