#include "editors/buffer/Buffer.h"

#include "editors/AllKinds.h"
#include "interfaces/kinds/KindEntry.h"

namespace vlEditor {

void BufferKind::switchOnUsages(Engine& fresh) {
    fresh.setUnorderedAccess(true);
    fresh.setShaderResource(true);
}

void BufferKind::bind(Bindings<BufferKind>& window) {
    window.numbers("_UPDATE",
                   UpdateBuffer{},
                   NumberBox{"_SIZE_EDIT", &UpdateBuffer::elementByteSize},
                   NumberBox{"_COUNT_EDIT", &UpdateBuffer::elementCount});
}

const AnyKind& bufferKind() {
    static const KindEntry<BufferKind, UpdateBuffer> kind;
    return kind;
}

} // namespace vlEditor
