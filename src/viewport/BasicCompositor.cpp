#include "viewport/BasicCompositor.h"

#include "interfaces/ReservedNames.h"

#include <vlGraphics/ContentLoader.h>

namespace vlEditor {
namespace {

constexpr std::string_view sources = R"({
  "formatVersion": 1,
  "compositors": [
    {
      "name": "EDITOR_BASIC_COMPOSITOR",
      "nodes": [
        {
          "operations": [
            {
              "colorTargets": ["VORLANE_BACK_BUFFER"],
              "depthTarget": "VORLANE_DEPTH_BUFFER",
              "passes": [
                {
                  "type": "clearTargets",
                  "clearColor": true,
                  "clearDepth": true,
                  "clearColorValue": "0.0011, 0.009, 0.035, 1.0"
                },
                { "type": "renderScene" }
              ]
            }
          ]
        }
      ]
    }
  ]
})";

} // namespace

vlCommon::Result<> BasicCompositor::create() {
    auto made = vlGraphics::ContentLoader::processCompositorSources(sources);
    if (!made) return made;
    auto* compositor =
            vlGraphics::CompositorManager::getInstance()->get(ReservedNames::basicCompositor);
    if (compositor == nullptr) return vlCommon::fail("the editor's basic compositor is missing");
    compositor->setHidden(true);
    return {};
}

} // namespace vlEditor
