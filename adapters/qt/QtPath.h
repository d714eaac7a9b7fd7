#pragma once

#include <QByteArray>
#include <QFile>
#include <QStandardPaths>
#include <QString>

#include <filesystem>
#include <initializer_list>
#include <system_error>

namespace dunmora {

/// Converts between Qt's file names and paths.
inline std::filesystem::path pathOf(const QString& name)
{
    return QFile::encodeName(name).toStdString();
}

inline QString textOf(const std::filesystem::path& path)
{
    return QFile::decodeName(QByteArray::fromStdString(path.string()));
}

/// The first of these folders that exists, or else the standard one.
inline std::filesystem::path startFolder(std::initializer_list<std::filesystem::path> folders,
                                         QStandardPaths::StandardLocation otherwise)
{
    for (const auto& folder : folders) {
        std::error_code error;
        if (std::filesystem::is_directory(folder, error)) {
            return folder;
        }
    }
    return pathOf(QStandardPaths::writableLocation(otherwise));
}

}  // namespace dunmora
