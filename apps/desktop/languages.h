// The language of the windows.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

namespace desktop {

/// Those that the windows have texts in besides English, as ISO 639 codes; none where the program was built
/// without the toolkit's tools for translators.
QStringList TranslatedLanguages();

/// What the user chose, which another start goes by: "en", one of the translated ones, or empty for the
/// system's. It has a file of its own, since it is read before there is anything that could tell of damaged
/// settings: where that cannot be understood, the system's language is taken.
QString RememberedLanguage();
/// @return why it could not be kept, a sentence; empty when it is
QString RememberLanguage(const QString& language);

/// Has texts translated from now on, those of the toolkit's own dialogs too as far as they are installed. To
/// be called once, with an application and before the first window is made.
/// @param language  as RememberedLanguage has it
void Translate(const QString& language);

} // namespace desktop
