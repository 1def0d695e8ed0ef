#pragma once
// The volume a folder is on: its space and the key that groups folders by it.

#include <QString>

#include <cstdint>

// The bytes free to the caller on the volume the folder itself is on, and the
// volume's size, as the platform gives them to the caller; false when they
// cannot be read. A volume mounted into a folder, or reached through a link,
// is the one measured, never the drive's root.
bool readFolderSpace(const QString& folder, std::uint64_t& freeBytes, std::uint64_t& totalBytes);

// What folders on one volume share: the volume's path, or the folder's own
// when the volume cannot be named.
QString volumeKey(const QString& folder);
