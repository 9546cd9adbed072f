// Choosing the content folders.
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>
#include <QStringList>

namespace desktop {

class FoldersEditor;

/// The folders in their order, which decides whose file is taken where two have the same.
class FoldersDialog : public QDialog {
    Q_OBJECT

public:
    FoldersDialog(QWidget* parent, const QStringList& folders);

    QStringList folders() const;

private:
    FoldersEditor* _editor;
};

} // namespace desktop
