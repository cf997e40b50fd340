// SPDX-License-Identifier: MIT
#include "sim/device_files.h"

#include "sim/error.h"

#include <fstream>

namespace sim {

namespace fs = std::filesystem;

std::string read_file(const fs::path &file)
{
    std::ifstream in(file, std::ios::binary);
    if (!in)
        fail<error>("cannot read " + file.string());
    return {std::istreambuf_iterator<char>(in), {}};
}

std::vector<device_file> read_device_files(const fs::path &root)
{
    std::vector<device_file> files;
    if (!fs::exists(root))
        return files;
    for (const fs::directory_entry &entry : fs::recursive_directory_iterator(root)) {
        const fs::path place = "/" / entry.path().lexically_relative(root);
        if (entry.is_symlink())
            files.push_back({place, fs::read_symlink(entry), 0, true});
        else if (!entry.is_directory())
            files.push_back({place, read_file(entry), mode_t(entry.status().permissions()), false});
    }
    return files;
}

} // namespace sim
