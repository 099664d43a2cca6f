#include "openmaya/ApiBridge.h"
#include "openmaya/DrawState.h"
#include "openmaya/Texture.h"
#include "scene/Host.h"

#include <maya/MTextureManager.h>

#include <QImage>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <map>

using lightbox::ApiBridge;
using lightbox::Host;

namespace {

constexpr unsigned MAX_SIZE = 16384;
constexpr int PIXEL_BYTES = 4;

bool CanMake(const MHWRender::MTextureDescription& description) {
    return description.fTextureType == MHWRender::kImage2D && description.fArraySlices == 1 &&
           description.fDepth == 1 && description.fFormat == MHWRender::kR8G8B8A8_UNORM &&
           description.fWidth > 0 && description.fWidth <= MAX_SIZE && description.fHeight > 0 &&
           description.fHeight <= MAX_SIZE &&
           (description.fBytesPerRow == 0 || description.fBytesPerRow >= description.fWidth * PIXEL_BYTES);
}

/// Copies the pixels that differ and returns their area. Comparing reads both images once, which costs less
/// than an upload.
QRect CopyChangedPixels(const void* pixels, std::size_t rowPitch, QImage& image) {
    const std::size_t rowBytes = static_cast<std::size_t>(image.width()) * PIXEL_BYTES;
    const auto* source = static_cast<const unsigned char*>(pixels);
    QRect changed;
    for (int row = 0; row < image.height(); ++row, source += rowPitch) {
        if (std::memcmp(source, image.constScanLine(row), rowBytes) == 0) {
            continue;
        }
        unsigned char* const target = image.scanLine(row);
        const auto first = std::mismatch(source, source + rowBytes, target).first - source;
        const auto last =
            std::mismatch(std::make_reverse_iterator(source + rowBytes), std::make_reverse_iterator(source),
                          std::make_reverse_iterator(target + rowBytes))
                .first.base() -
            source - 1;
        changed |= QRect(QPoint(static_cast<int>(first / PIXEL_BYTES), row),
                         QPoint(static_cast<int>(last / PIXEL_BYTES), row));
        std::memcpy(target, source, rowBytes);
    }
    return changed;
}

} // namespace

namespace MHWRender {

MTextureDescription::MTextureDescription() {
    setToDefault2DTexture();
}

void MTextureDescription::setToDefault2DTexture() {
    fWidth = 0;
    fHeight = 0;
    fDepth = 1;
    fBytesPerRow = 0;
    fBytesPerSlice = 0;
    fMipmaps = 0;
    fArraySlices = 1;
    fFormat = kR8G8B8A8_UNORM;
    fTextureType = kImage2D;
    fEnvMapType = kEnvNone;
}

MTexture::MTexture(std::unique_ptr<State> state)
    : state_(std::move(state)) {}

MTexture::~MTexture() = default;

const MString& MTexture::name() const {
    return state_->name;
}

void MTexture::textureDescription(MTextureDescription& desc) const {
    desc = state_->description;
}

bool MTexture::hasAlpha() const {
    return true;
}

MStatus MTexture::update(const void* pixelData, bool generateMipMaps, unsigned int rowPitch) {
    lightbox::Texture& texture = *state_->texture;
    const unsigned int tight = static_cast<unsigned int>(texture.image.width()) * PIXEL_BYTES;
    if (!pixelData || (rowPitch != 0 && rowPitch < tight)) {
        return MS::kInvalidParameter;
    }
    const QRect changed = CopyChangedPixels(pixelData, rowPitch != 0 ? rowPitch : tight, texture.image);
    if (!changed.isEmpty() || texture.hasMipmaps != generateMipMaps) {
        texture.hasMipmaps = generateMipMaps;
        texture.Changed(changed);
    }
    return MS::kSuccess;
}

struct MTextureManager::State {
    struct Deleter {
        void operator()(MTexture* texture) const { delete texture; }
    };

    std::vector<std::unique_ptr<MTexture, Deleter>> textures;
};

MTextureManager::MTextureManager()
    : state_(std::make_unique<State>()) {}

MTextureManager::~MTextureManager() = default;

MTexture* MTextureManager::acquireTexture(const MString& textureName, const MTextureDescription& textureDesc,
                                          const void* pixelData, bool generateMipMaps) const {
    if (MTexture* known = findTexture(textureName)) {
        return known;
    }
    if (!pixelData || !CanMake(textureDesc)) {
        return nullptr;
    }
    auto pixels = std::make_shared<lightbox::Texture>();
    pixels->name = ApiBridge::Text(textureName);
    pixels->image = QImage(static_cast<int>(textureDesc.fWidth), static_cast<int>(textureDesc.fHeight),
                           QImage::Format_RGBA8888);
    if (pixels->image.isNull()) {
        return nullptr; // out of memory
    }
    pixels->image.fill(0);
    auto state = std::make_unique<MTexture::State>();
    state->texture = std::move(pixels);
    state->name = textureName;
    state->description = textureDesc;
    state_->textures.emplace_back(new MTexture(std::move(state)));
    MTexture* texture = state_->textures.back().get();
    texture->update(pixelData, generateMipMaps, textureDesc.fBytesPerRow);
    return texture;
}

MTexture* MTextureManager::findTexture(const MString& textureName) const {
    for (const auto& texture : state_->textures) {
        if (textureName.length() > 0 && texture->name() == textureName) {
            ++texture->state_->users;
            return texture.get();
        }
    }
    return nullptr;
}

void MTextureManager::releaseTexture(MTexture* texture) const {
    auto& textures = state_->textures;
    const auto found = std::find_if(textures.begin(), textures.end(),
                                    [&](const auto& candidate) { return candidate.get() == texture; });
    if (found != textures.end() && --(*found)->state_->users == 0) {
        textures.erase(found);
    }
}

MRenderer* MRenderer::theRenderer(bool) {
    static MRenderer renderer;
    const Host* host = Host::Current();
    return host && !host->IsBatch() ? &renderer : nullptr;
}

DrawAPI MRenderer::drawAPI() const {
    return kOpenGL;
}

MTextureManager* MRenderer::getTextureManager() const {
    static MTextureManager manager;
    return &manager;
}

} // namespace MHWRender

std::shared_ptr<lightbox::Texture> ApiBridge::TextureOf(const MHWRender::MTexture& texture) {
    return texture.state_->texture;
}
