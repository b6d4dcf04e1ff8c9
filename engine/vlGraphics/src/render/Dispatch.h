#pragma once
#include "render/PassRecorder.h"

#include <vlGraphics/ComputePass.h>

namespace vlGraphics::render {

/** Records a compute pass. Does nothing while the shader cannot compute; more groups than the
 * device takes are cut off, with one line. */
void dispatch(const ComputePass& pass,
              const Shader& shader,
              const PassInputs& inputs,
              PassRecorder& recorder);

} // namespace vlGraphics::render
