#pragma once

#include <string>

#include <zor/ref_ptr.h>
#include <zorRender/RenderData.h>

namespace zorModel {

// Readers of one format each: contents of the file to triangles. What they throw says why, not which file.

zor::ref_ptr<zorRender::RenderData> readObj(std::string const& text);
zor::ref_ptr<zorRender::RenderData> readStl(std::string const& bytes);

} // namespace zorModel
