#pragma once

namespace lightbox {

/// What the scene files room is doing at this moment; operations nest (a reference is read while its scene
/// opens).
enum class FileOperation { New, Open, Import, Reference, Save, Export };

} // namespace lightbox
