#include "controls/field_size.h"

namespace qlx {

wxSize FieldSize(const wxWindow& field, std::size_t characters) {
  const int height = field.GetCharHeight() + field.GetCharHeight() / 2;
  return {(static_cast<int>(characters) + 2) * field.GetTextExtent("0").x + height / 2, height};
}

}  // namespace qlx
