#include "bullet/ShapeImpl.h"

#include <algorithm>

namespace zorBullet {

void ShapeImpl::removeHolder(ShapeHolder& holder) {
  auto const it = std::find(m_holders.begin(), m_holders.end(), &holder);
  if (it != m_holders.end())
    m_holders.erase(it);
}

void ShapeImpl::notifyHolders() const {
  ++m_revision;
  auto holders = m_holders; // listeners of the change may add and remove
  std::sort(holders.begin(), holders.end());
  holders.erase(std::unique(holders.begin(), holders.end()), holders.end());
  for (ShapeHolder* holder : holders)
    if (std::find(m_holders.begin(), m_holders.end(), holder) != m_holders.end())
      holder->onShapeChanged();
}

} // namespace zorBullet
