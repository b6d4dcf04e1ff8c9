#pragma once
#include "script/EngineTables.h"

namespace vlKestrion {

EngineKind nodeKind();
EngineKind entityKind();
EngineKind cameraKind();
EngineKind materialKind();
EngineKind shaderKind();
EngineKind programKind();
EngineKind meshKind();
EngineKind textureKind();
EngineKind samplerKind();
EngineKind bufferKind();
EngineKind blendStateKind();
EngineKind depthStencilStateKind();
EngineKind rasterStateKind();
EngineKind viewportKind();
EngineKind renderQueueKind();
EngineKind compositorKind();
EngineKind renderContextKind();

} // namespace vlKestrion
