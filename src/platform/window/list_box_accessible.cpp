#include "platform/window/list_box_accessible.h"

#include "platform/window/list_box.h"
#include "platform/window/text.h"

namespace platform::window {

QString ListBoxAccessible::text(QAccessible::Text kind) const
{
    constexpr std::size_t kMostCharacters = 1000;  // what a reader may be asked to speak
    if (kind != QAccessible::Value)
        return QAccessibleWidget::text(kind);
    const auto* const listBox = dynamic_cast<const ListBox*>(widget());
    return VisibleText(listBox->SelectedText(BytesOfCharacters(kMostCharacters)), kMostCharacters);
}

QAccessibleInterface* ListBoxAccessible::Create(const QString& /*className*/, QObject* object)
{
    auto* const listBox = dynamic_cast<ListBox*>(object);
    return listBox == nullptr ? nullptr : new ListBoxAccessible(listBox);
}

}  // namespace platform::window
