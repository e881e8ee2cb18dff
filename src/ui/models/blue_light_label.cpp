#include "ui/models/blue_light_label.h"

namespace marzipel {

std::string_view blueLightToggleLabel(BlueLightFilterName name) {
    switch (name) {
        case BlueLightFilterName::nightShift:
            return "Disable Night Shift";
        case BlueLightFilterName::nightLight:
            return "Disable Night Light";
        case BlueLightFilterName::nightColor:
            return "Disable Night Color";
        case BlueLightFilterName::none:
            break;
    }
    return "Disable the blue-light filter";
}

}  // namespace marzipel
