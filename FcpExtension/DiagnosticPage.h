#pragma once

#include <string_view>

namespace fcp {

// A fixed, self-contained page that tells a rendering problem of the web view from a problem of the web
// application. The classes "ok" and "fail" are styled and not used: the page stays as support knows it.
inline constexpr std::string_view diagnosticPage =
    R"page(<!DOCTYPE html><html><head><meta charset="utf-8"><title>FCP Diag</title>
<style>body{font-family:-apple-system;margin:40px;background:#0a0a0a;color:#f0eee4}
h1{font-size:18px;color:#f2762e}pre{font-size:11px;color:#9a988d;margin-top:20px}
.ok{color:#4caf50}.fail{color:#e06551}</style></head>
<body><h1>Zelvix FCP Extension — Diagnostic</h1>
<p>If you see this, the WKWebView is rendering correctly.</p>
<p>The issue is with the production React app, not the native extension.</p>
<pre id="info">Checking...</pre>
<script>
var e=document.getElementById('info');
e.innerHTML='URL: '+location.href+'\n'+
'User-Agent: '+navigator.userAgent+'\n'+
'fcpBridge: '+(!!window.webkit?.messageHandlers?.fcpBridge?'OK':'MISSING')+'\n'+
'localStorage: '+(typeof localStorage!=='undefined'?'OK':'MISSING')+'\n'+
'Time: '+new Date().toISOString();
console.log('[FCP Diag] Page loaded successfully');
</script></body></html>)page";

} // namespace fcp
