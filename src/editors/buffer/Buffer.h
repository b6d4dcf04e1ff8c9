#pragma once
#include "interfaces/ContainerType.h"
#include "interfaces/kinds/ResourceInterface.h"

#include <vlGraphics/Buffer.h>

namespace vlEditor {

struct BufferKind;

/** What the UI knows of a buffer. What shaders may use it for, its declaration says besides. */
struct BufferRecord {
    std::string name;
    std::uint32_t elementByteSize = 0;
    std::uint32_t elementCount = 0;

    template <class K = BufferKind> static constexpr auto members() { return membersOfFields<K>(); }
    friend bool operator==(const BufferRecord&, const BufferRecord&) = default;
};

struct BufferKind {
    using Record = BufferRecord;
    using Engine = vlGraphics::Buffer;
    using Manager = vlGraphics::BufferManager;
    using Memento = TreeMemento<BufferKind>;

    /// Shaders may write to it and read from it.
    static void switchOnUsages(Engine& fresh);

    static constexpr ContainerType containerType = ContainerType::buffer;
    static constexpr KindTexts texts{
            .kind = "Buffer",
            .title = "Buffers",
            .prefix = "EDITOR_BUFFERS_",
            .creation = "BUFFER_CREATION",
            .creationTitle = "Buffer Creation",
            .explorer = "EDITOR_BUFFER_EXPLO",
            .filterLabel = "Buffer Declaration Files",
            .extension = "vlbu",
            .pickLists = {{{"UAV_POP_UP_LIST"}, {"TEXTURE_BUFFER_POP_UP_LIST", "B. "}}},
            .subject = "Buffer",
            .deleteStart = "Deleting Buffer '",
    };
    // The memory of the old size goes before that of the new one is taken.
    static constexpr KindHooks<Engine> hooks{
            .reload = Reload::aroundChange,
            .load = &vlGraphics::ContentLoader::loadBufferDeclaration,
            .created = &switchOnUsages};
    // In the order in which the engine is set.
    static constexpr std::tuple fields{
            VL_FIELD(elementCount, getElementCount, setElementCount),
            VL_FIELD(elementByteSize, getElementByteSize, setElementByteSize),
    };
    static KindLayout layout() { return {"buffer.json", {}}; }
    static void bind(Bindings<BufferKind>& window);
};

VL_RESOURCE_KIND_NAMES(Buffer);

struct UpdateBuffer {
    using Kind = BufferKind;
    std::uint32_t elementCount = 0;
    std::uint32_t elementByteSize = 0;

    static constexpr auto members() {
        return std::tuple{Member{"elementCount", &UpdateBuffer::elementCount},
                          Member{"elementByteSize", &UpdateBuffer::elementByteSize}};
    }
    void applyTo(Kind::Engine& buffer) const {
        buffer.setElementCount(elementCount);
        buffer.setElementByteSize(elementByteSize);
    }
    void readFrom(const BufferRecord& record) {
        elementCount = record.elementCount;
        elementByteSize = record.elementByteSize;
    }
};

using UpdateBufferMessage = ResourceEditMessage<UpdateBuffer>;

} // namespace vlEditor
