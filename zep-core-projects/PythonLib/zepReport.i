// The Markdown pricing report of scripted products and its HTML view.
%{
#include "lum-monte-carlo/ScriptingReporter.hpp"
%}

%template(StringMap) std::map<std::string, std::string>;

%feature("docstring") zep::ScriptingReporter
"Assembles the Markdown pricing report of a scripted product from its fixed template.";
%ignore zep::ScriptingReporter::ScriptingReporter;
%ignore zep::ScriptingReporter::Sections;
%ignore zep::ScriptingReporter::Render;
%ignore zep::ScriptingReporter::Write;
%nodefaultctor zep::ScriptingReporter;
%include "lum-monte-carlo/ScriptingReporter.hpp"

%pythoncode %{
def report_to_html(markdown_path: "str", html_path: "str | None" = None) -> "str":
    """Writes a standalone HTML view of a pricing report, its two plot markers drawn as charts
    from the data the report embeds, and returns the HTML file's path."""
    from .report_html import report_to_html as convert
    return convert(markdown_path, html_path)
%}
