#pragma once

class QString;

/// Chinese for what the toolkit itself says: buttons of boxes, menus of text fields, file dialogs.
namespace chinese_texts {

/// Speaks Chinese in this application from now on, whatever the machine's language. @p catalogues
/// is the folder of Qt's own translations; without the one for Chinese, or where that has gaps, the
/// texts that this application can show are its own. To be called once; GUI thread only.
void install(const QString& catalogues);

} // namespace chinese_texts
