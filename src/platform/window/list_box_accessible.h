#pragma once

#include <QAccessibleWidget>

namespace platform::window {

/// What screen readers hear of a list box: a list of this name whose value is the selected line. Its lines
/// are no objects of their own, for there may be millions.
class ListBoxAccessible final : public QAccessibleWidget {
public:
    explicit ListBoxAccessible(QWidget* listBox) : QAccessibleWidget(listBox, QAccessible::List) {}

    [[nodiscard]] QString text(QAccessible::Text kind) const override;

    /// For QAccessible::installFactory: an interface for list boxes, null for any other object.
    [[nodiscard]] static QAccessibleInterface* Create(const QString& className, QObject* object);
};

}  // namespace platform::window
