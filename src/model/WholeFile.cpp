#include "model/WholeFile.h"

#include <fstream>
#include <system_error>

namespace kalvrooms {

std::filesystem::path UnfinishedName(const std::filesystem::path& file) {
    std::filesystem::path unfinished = file;
    unfinished += ".new";
    return unfinished;
}

void WriteWhole(const std::filesystem::path& file, std::string_view bytes) {
    const std::filesystem::path unfinished = UnfinishedName(file);
    try {
        std::ofstream stream(unfinished, std::ios::binary | std::ios::trunc);
        stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        stream.close();
        if (!stream)
            throw std::system_error(std::make_error_code(std::errc::io_error));
        std::filesystem::rename(unfinished, file);
    } catch (const std::system_error&) {
        std::error_code ignored;
        std::filesystem::remove(unfinished, ignored);
        throw;
    }
}

} // namespace kalvrooms
