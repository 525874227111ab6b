#pragma once

#include <osg/Image>

#include <filesystem>

namespace zorOSG {

/** \return a name beside path, with the same suffix, under which a file is written until it is whole. */
std::filesystem::path partialName(std::filesystem::path const& path);

/**
 * Writes an image so that the file appears whole or not at all.
 * \throws std::runtime_error naming the file and the reason.
 */
void writeImageAtomically(osg::Image const& image, std::filesystem::path const& path);

/**
 * Makes a directory with its parents and checks that files can be made in it.
 * \throws std::runtime_error naming the directory and the reason.
 */
void requireWritableDirectory(std::filesystem::path const& directory);

/**
 * Checks that an image writer exists for a suffix.
 * \throws std::runtime_error naming the suffix.
 */
void requireImageWriter(std::string const& suffix);

} // namespace zorOSG
