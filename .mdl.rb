# The rules of the Markdown linter (mdl).
all
exclude_rule 'MD031'  # the examples in docs/clients.md follow a comment that names their source
exclude_rule 'MD033'  # inline HTML
exclude_rule 'MD057'  # does not know the separation of columns that are aligned to the right
rule 'MD013', :line_length => 120, :tables => false, :ignore_code_blocks => true
rule 'MD024', :allow_different_nesting => true
rule 'MD029', :style => :ordered
