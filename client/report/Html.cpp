#include "report/Html.h"

namespace ZOTDam::Client {

std::string Escaped(std::string_view text) {
    std::string html;
    for (const char c : text)
        switch (c) {
            case '&':
                html += "&amp;";
                break;
            case '<':
                html += "&lt;";
                break;
            case '>':
                html += "&gt;";
                break;
            case '"':
                html += "&quot;";
                break;
            case '\'':
                html += "&#39;";
                break;
            default:
                html += c;
        }
    return html;
}

std::string Tag(std::string_view name, std::string_view content, std::string_view attributes) {
    std::string html = "<";
    html.append(name).append(attributes).append(">").append(content);
    return html.append("</").append(name).append(">");
}

}  // namespace ZOTDam::Client
