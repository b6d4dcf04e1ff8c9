#pragma once
#include <vlCommon/Result.h>
#include <vlExport/Node.h>
#include <vlScripts/Value.h>

namespace vlEditor {

/// What a script's value is as a tree. `like` settles what an empty table means. Fails for what no
/// tree holds, with its place.
vlCommon::Result<vlExport::Node> treeOf(const vlScripts::Value& value, const vlExport::Node* like);

/// A tree as a script's value: objects and lists are tables.
vlScripts::Value valueOf(const vlExport::Node& tree);

/// The members of a message: those of the script's table in place of the ones it has by default.
vlCommon::Result<vlExport::Node> withFields(vlExport::Node members, const vlScripts::Table& fields);

} // namespace vlEditor
