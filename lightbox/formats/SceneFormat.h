#pragma once

namespace lightbox {

/// The formats that a scene can be stored in, named as `file -type` names them.
enum class SceneFormat { MayaAscii, LightboxBinary };

} // namespace lightbox
