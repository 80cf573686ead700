#include "workbench/chinese_texts.h"

#include <QCoreApplication>
#include <QHash>
#include <QLocale>
#include <QTranslator>

namespace {

struct Text
{
    const char* english;
    const char* chinese;
};

// One text means the same wherever the toolkit says it.
constexpr Text texts[] = {
    // Buttons
    {"OK", "确定"},
    {"&OK", "确定(&O)"},
    {"&Yes", "是(&Y)"},
    {"&No", "否(&N)"},
    {"Yes to &All", "全部是(&A)"},
    {"N&o to All", "全部否(&O)"},
    {"Cancel", "取消"},
    {"&Cancel", "取消(&C)"},
    {"Close", "关闭"},
    {"&Close", "关闭(&C)"},
    {"Save", "保存"},
    {"&Save", "保存(&S)"},
    {"Save All", "全部保存"},
    {"Discard", "不保存"},
    {"Close without Saving", "关闭而不保存"},
    {"Open", "打开"},
    {"&Open", "打开(&O)"},
    {"Apply", "应用"},
    {"Reset", "重置"},
    {"Restore Defaults", "恢复默认值"},
    {"Abort", "中止"},
    {"Retry", "重试"},
    {"Ignore", "忽略"},
    {"Help", "帮助"},
    {"Show Details...", "显示详情..."},
    {"Hide Details...", "隐藏详情..."},
    // Text fields
    {"&Undo", "撤销(&U)"},
    {"&Redo", "重做(&R)"},
    {"Cu&t", "剪切(&T)"},
    {"&Copy", "复制(&C)"},
    {"Copy &Link Location", "复制链接(&L)"},
    {"&Paste", "粘贴(&P)"},
    {"Delete", "删除"},
    {"Select All", "全选"},
    {"&Select All", "全选(&S)"},
    {"&Step up", "增加(&S)"},
    {"Step &down", "减少(&D)"},
    // File dialogs
    {"Look in:", "查找范围："},
    {"Directory:", "文件夹："},
    {"File &name:", "文件名(&N)："},
    {"Files of type:", "文件类型："},
    {"&Choose", "选择(&C)"},
    {"Find Directory", "查找文件夹"},
    {"Save As", "另存为"},
    {"All Files (*)", "所有文件 (*)"},
    {"All files (*)", "所有文件 (*)"},
    {"Directories", "文件夹"},
    {"Files", "文件"},
    {"File", "文件"},
    {"%1 File", "%1 文件"},
    {"File Folder", "文件夹"},
    {"Folder", "文件夹"},
    {"Drive", "磁盘"},
    {"Unknown", "未知"},
    {"Back", "后退"},
    {"Go back", "后退"},
    {"Forward", "前进"},
    {"Go forward", "前进"},
    {"Parent Directory", "上级文件夹"},
    {"Go to the parent directory", "转到上级文件夹"},
    {"Create New Folder", "新建文件夹"},
    {"Create a New Folder", "新建文件夹"},
    {"New Folder", "新建文件夹"},
    {"&New Folder", "新建文件夹(&N)"},
    {"List View", "列表"},
    {"Change to list view mode", "以列表显示"},
    {"Detail View", "详细信息"},
    {"Change to detail view mode", "显示详细信息"},
    {"Sidebar", "侧栏"},
    {"List of places and bookmarks", "常用位置"},
    {"Recent Places", "最近的位置"},
    {"Computer", "计算机"},
    {"My Computer", "计算机"},
    {"Name", "名称"},
    {"Size", "大小"},
    {"Type", "类型"},
    {"Kind", "类型"},
    {"Date Modified", "修改日期"},
    {"&Rename", "重命名(&R)"},
    {"&Delete", "删除(&D)"},
    {"Remove", "移除"},
    {"Show ", "显示 "},
    {"Show &hidden files", "显示隐藏文件(&H)"},
    {"%1 already exists.\nDo you want to replace it?", "%1 已存在。\n要替换它吗？"},
    {"%1\nFile not found.\nPlease verify the correct file name was given.",
     "%1\n找不到此文件。\n请检查文件名。"},
    {"%1\nDirectory not found.\nPlease verify the correct directory name was given.",
     "%1\n找不到此文件夹。\n请检查文件夹名。"},
    {"Are you sure you want to delete '%1'?", "确定要删除“%1”吗？"},
    {"'%1' is write protected.\nDo you want to delete it anyway?",
     "“%1”是只读的。\n仍然要删除它吗？"},
    {"Could not delete directory.", "无法删除文件夹。"},
    {"Invalid filename", "无效的文件名"},
    {"<b>The name \"%1\" cannot be used.</b><p>Try using another name, with fewer characters or no "
     "punctuation marks.",
     "<b>不能使用名称“%1”。</b><p>请换一个较短的、没有标点符号的名称。"},
    // Bars and docks
    {"Scroll here", "滚动到此处"},
    {"Top", "顶部"},
    {"Bottom", "底部"},
    {"Left edge", "最左"},
    {"Right edge", "最右"},
    {"Page up", "上一页"},
    {"Page down", "下一页"},
    {"Page left", "左一页"},
    {"Page right", "右一页"},
    {"Scroll up", "向上滚动"},
    {"Scroll down", "向下滚动"},
    {"Scroll left", "向左滚动"},
    {"Scroll right", "向右滚动"},
    {"Float", "浮动"},
};

/// What Qt's catalogue doesn't say.
class OwnTexts : public QTranslator
{
public:
    explicit OwnTexts(QObject* parent) : QTranslator(parent)
    {
        for (const Text& text : texts)
            m_texts.insert(text.english, QString::fromUtf8(text.chinese));
    }

    bool isEmpty() const override { return false; }

    QString translate(const char* context, const char* text, const char*, int) const override
    {
        const bool isToolkit = context && context[0] == 'Q';
        return isToolkit ? m_texts.value(QByteArray(text)) : QString();
    }

private:
    QHash<QByteArray, QString> m_texts;
};

} // namespace

void chinese_texts::install(const QString& catalogues)
{
    QCoreApplication* application = QCoreApplication::instance();
    QLocale::setDefault(QLocale(QLocale::Chinese, QLocale::China)); // days in file dialogs
    QCoreApplication::installTranslator(new OwnTexts(application));
    auto* catalogue = new QTranslator(application);
    // Asked first, being installed last.
    if (catalogue->load(QStringLiteral("qtbase_zh_CN"), catalogues))
        QCoreApplication::installTranslator(catalogue);
    else
        delete catalogue;
}
