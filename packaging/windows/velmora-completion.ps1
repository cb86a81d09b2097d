# Completion for velmora-console and velmora-host in PowerShell: dot-source this file in the profile ($PROFILE).

$VelmoraWords = @{
  'velmora-console'          = 'export', 'import', 'newguids'
  'velmora-console export'   = '-s', '-fn', '-o', '-sn', '-sp', '-un', '-up', '-sf', '-c', '-p', '-minimal-display'
  'velmora-console import'   = '-c', '-s', '-fn', '-i', '-minimal-display'
  'velmora-console newguids' = '-f', '-minimal-display'
  'velmora-host'             = 'export', 'import', 'publish'
  'velmora-host export'      = , '-minimal-display'
  'velmora-host import'      = , '-minimal-display'
  'velmora-host publish'     = , '-minimal-display'
}
$VelmoraValues = @{
  '-s' = 'file', 'server'
  '-p' = 'sdui', 'iserv', 'ocf'
}

Register-ArgumentCompleter -Native -CommandName 'velmora-console', 'velmora-host' -ScriptBlock {
  param($WordToComplete, $CommandAst, $CursorPosition)

  $Words = @($CommandAst.CommandElements |
      Where-Object { $_.Extent.EndOffset -lt $CursorPosition } |
      ForEach-Object { $_.Extent.Text.Trim("'`"") })
  $Program = [IO.Path]::GetFileNameWithoutExtension($Words[0])
  $Offered = if ($Words.Count -eq 1) {
    $VelmoraWords[$Program]
  } elseif ($VelmoraValues.ContainsKey($Words[-1])) {
    $VelmoraValues[$Words[-1]]
  } elseif ($WordToComplete.StartsWith('-')) {
    $VelmoraWords["$Program $($Words[1])"]
  }
  # Nothing offered lets PowerShell complete the names of files.
  $Offered | Where-Object { $_ -like "$WordToComplete*" } |
    ForEach-Object { [Management.Automation.CompletionResult]::new($_, $_, 'ParameterValue', $_) }
}
