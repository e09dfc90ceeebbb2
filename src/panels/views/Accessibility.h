#pragma once

namespace quillmark {

/// Makes the texts and comparisons of the panels known to assistive technology, which the toolkit can't do for views
/// that it does not know. Call once, before the views are made.
void installAccessibility();

}  // namespace quillmark
