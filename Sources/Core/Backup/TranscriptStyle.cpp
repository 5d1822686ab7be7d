#include "Core/Backup/TranscriptStyle.h"

namespace brimvale {

const std::string_view transcriptStyle =
    R"css(:root{--bg:#fff;--side:#f5f5f7;--rule:#e3e3e6;--ink:#1d1d1f;--ink2:#86868b; --blue:#248bf5;--green:#5bd769;--grey:#e9e9eb;}
@media (prefers-color-scheme:dark){ :root{--bg:#1c1c1e;--side:#000;--rule:#2c2c2e;--ink:#f5f5f7;--ink2:#98989d;--grey:#26252a;} }
*{box-sizing:border-box}
body{margin:0;font:14px/1.45 -apple-system,BlinkMacSystemFont,"SF Pro Text",Helvetica,Arial,sans-serif; color:var(--ink);background:var(--bg);display:flex;height:100vh;overflow:hidden}
aside{width:280px;flex:none;background:var(--side);border-right:1px solid var(--rule); overflow-y:auto;padding:10px 8px}
.hdr{font-size:12px;color:var(--ink2);padding:6px 10px 12px}
.chat{display:flex;gap:10px;align-items:center;width:100%;text-align:left;background:none; border:0;color:inherit;font:inherit;padding:8px 10px;border-radius:9px;cursor:pointer}
.chat:hover{background:rgba(127,127,127,.12)}
.chat.active{background:var(--blue);color:#fff}
.chat.active .who i,.chat.active .when{color:rgba(255,255,255,.8)}
.avatar{width:34px;height:34px;flex:none;border-radius:50%;background:#c7c7cc;color:#fff; display:flex;align-items:center;justify-content:center;font-weight:600}
.who{flex:1;min-width:0;display:flex;flex-direction:column}
.who b{font-weight:600;overflow:hidden;text-overflow:ellipsis;white-space:nowrap}
.who i{font-style:normal;font-size:12px;color:var(--ink2)}
.when{font-size:11px;color:var(--ink2);flex:none}
main{flex:1;min-width:0;display:flex;flex-direction:column}
.pane{display:none;flex-direction:column;height:100%}
.pane.active{display:flex}
.pane header{padding:14px 20px;border-bottom:1px solid var(--rule);font-weight:600; background:var(--bg);position:sticky;top:0}
.scroll{flex:1;overflow-y:auto;padding:16px 20px 28px}
.daysep{text-align:center;margin:18px 0 12px}
.daysep span{font-size:11px;color:var(--ink2)}
.row{display:flex;margin:2px 0}
.row.me{justify-content:flex-end}
.bubble{max-width:66%;padding:7px 12px;border-radius:18px;background:var(--grey); white-space:pre-wrap;word-wrap:break-word}
.row.me .bubble{background:var(--blue);color:#fff}
.row.me .bubble.sms{background:var(--green)}
.clip,.att{display:block;font-style:normal;font-size:11px;opacity:.75;margin-top:3px}
)css";

} // namespace brimvale
