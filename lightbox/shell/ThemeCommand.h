#pragma once

namespace lightbox {

class Host;

/// Gives the application the theme that the user chose last. Dark is the first choice.
void ApplyChosenTheme(const Host& host);

} // namespace lightbox
