#include "factoryproduct.h"

#include <ostream>

namespace ViewerAPI {

std::ostream& operator<<(std::ostream& out, const FactoryProduct& product) {
    return out << (product.kind == kFactoryProductProduced ? "Produced: " : " Removed: ")
               << product.path << ": " << product.attrs.getHash().str();
}

} // namespace ViewerAPI
