#pragma once

#include <QStringList>

namespace vellix {

/// Names for files, one for each layer, in the same order: the names of the layers without what a file system
/// of ours refuses. No two are the same, also where capitals do not count.
QStringList LayerFileNames(const QStringList& layers);

} // namespace vellix
