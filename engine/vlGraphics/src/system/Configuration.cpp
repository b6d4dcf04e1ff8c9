#include <vlGraphics/Configuration.h>

#include <cstdlib>
#include <string_view>

namespace vlGraphics {

bool Configuration::validationFromEnvironment() {
    const char* value = std::getenv("VLGRAPHICS_VALIDATION");
    return value != nullptr && std::string_view(value) == "1";
}

} // namespace vlGraphics
