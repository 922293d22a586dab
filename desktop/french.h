// The toolkit's own texts in French, as the rest of the window is, whatever the language of the system.
#pragma once

#include <QTranslator>

namespace desktop {

// The texts that can come to be seen: the menu of a text box and the choice of a colour.
class FrenchTexts final : public QTranslator {
 public:
  bool isEmpty() const override { return false; }
  QString translate(const char* context, const char* text, const char* disambiguation, int n) const override;
};

}  // namespace desktop
