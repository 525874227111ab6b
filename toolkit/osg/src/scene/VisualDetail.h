#pragma once

namespace zorOSG {

/** \param factor - by what the detail of visuals that are made from now on is multiplied, for machines that
 * draw slowly or very well; above zero */
void setVisualDetail(float factor);

/** \return what was set; 1 at first */
float getVisualDetail();

} // namespace zorOSG
