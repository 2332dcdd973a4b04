#include "tools/catalogues/catalogue.h"

#include <algorithm>

namespace quorix::tools {

const Catalogue* find_catalogue(std::string_view name) {
  const auto* const found = std::find_if(kCatalogues.begin(), kCatalogues.end(),
                                         [&](const Catalogue& one) { return one.name == name; });
  return found == kCatalogues.end() ? nullptr : found;
}

}  // namespace quorix::tools
