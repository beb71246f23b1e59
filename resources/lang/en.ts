<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="zh_CN">
<context>
    <name>BuiltInPicture</name>
    <message>
        <source>黎明</source>
        <translation>Dawn</translation>
    </message>
    <message>
        <source>极光</source>
        <translation>Aurora</translation>
    </message>
    <message>
        <source>沙丘</source>
        <translation>Dunes</translation>
    </message>
    <message>
        <source>海岸</source>
        <translation>Shore</translation>
    </message>
    <message>
        <source>港湾</source>
        <translation>Harbour</translation>
    </message>
    <message>
        <source>剪纸</source>
        <translation>Paper</translation>
    </message>
    <message>
        <source>星云</source>
        <translation>Nebula</translation>
    </message>
    <message>
        <source>晨雾</source>
        <translation>Mist</translation>
    </message>
    <message>
        <source>丝绸</source>
        <translation>Silk</translation>
    </message>
    <message>
        <source>等高线</source>
        <translation>Contours</translation>
    </message>
    <message>
        <source>轨道</source>
        <translation>Orbit</translation>
    </message>
</context>
<context>
    <name>ColorBar</name>
    <message>
        <source>白色</source>
        <translation>White</translation>
    </message>
    <message>
        <source>黑色</source>
        <translation>Black</translation>
    </message>
    <message>
        <source>橙色</source>
        <translation>Orange</translation>
    </message>
    <message>
        <source>黄色</source>
        <translation>Yellow</translation>
    </message>
    <message>
        <source>蓝色</source>
        <translation>Blue</translation>
    </message>
    <message>
        <source>绿色</source>
        <translation>Green</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>显示设计</source>
        <translation>Display</translation>
    </message>
    <message>
        <source>背景选择</source>
        <translation>Background</translation>
    </message>
    <message>
        <source>选择文件夹:</source>
        <translation>Choose folder:</translation>
    </message>
    <message>
        <source>默认主题</source>
        <translation>Themes</translation>
    </message>
    <message>
        <source>四个现成的主题</source>
        <translation>Four ready-made themes</translation>
    </message>
    <message>
        <source>自定义主题</source>
        <translation>My layout</translation>
    </message>
    <message>
        <source>自己排列的画面</source>
        <translation>A screen of your own design</translation>
    </message>
    <message>
        <source>选择主题</source>
        <translation>Choose a theme</translation>
    </message>
    <message>
        <source>主题</source>
        <translation>Themes</translation>
    </message>
    <message>
        <source>CPU温度</source>
        <translation>CPU Temp</translation>
    </message>
    <message>
        <source>在屏幕上显示CPU温度</source>
        <translation>Show the CPU temperature on the screen</translation>
    </message>
    <message>
        <source>CPU使用率</source>
        <translation>CPU Load</translation>
    </message>
    <message>
        <source>在屏幕上显示CPU使用率</source>
        <translation>Show the CPU load on the screen</translation>
    </message>
    <message>
        <source>内存使用率</source>
        <translation>Memory</translation>
    </message>
    <message>
        <source>在屏幕上显示内存使用率</source>
        <translation>Show the memory in use on the screen</translation>
    </message>
    <message>
        <source>时间</source>
        <translation>Time</translation>
    </message>
    <message>
        <source>在屏幕上显示时间</source>
        <translation>Show the time on the screen</translation>
    </message>
    <message>
        <source>功耗</source>
        <translation>Power</translation>
    </message>
    <message>
        <source>在屏幕上显示功耗</source>
        <translation>Show the CPU power on the screen</translation>
    </message>
    <message>
        <source>日期</source>
        <translation>Date</translation>
    </message>
    <message>
        <source>在屏幕上显示日期</source>
        <translation>Show the date on the screen</translation>
    </message>
    <message>
        <source>风扇转速</source>
        <translation>Fan</translation>
    </message>
    <message>
        <source>在屏幕上显示风扇转速</source>
        <translation>Show the fan speed on the screen</translation>
    </message>
    <message>
        <source>其他</source>
        <translation>Other</translation>
    </message>
    <message>
        <source>待定</source>
        <translation>Reserved</translation>
    </message>
    <message>
        <source>背景图片</source>
        <translation>Background pictures</translation>
    </message>
    <message>
        <source>屏幕预览</source>
        <translation>Screen preview</translation>
    </message>
    <message>
        <source>显示整张图片</source>
        <translation>Show the whole picture</translation>
    </message>
    <message>
        <source>横屏</source>
        <translation>Landscape</translation>
    </message>
    <message>
        <source>竖屏</source>
        <translation>Portrait</translation>
    </message>
    <message>
        <source>编辑</source>
        <translation>Edit</translation>
    </message>
    <message>
        <source>移动项目，输入文字，修剪图片</source>
        <translation>Move items, type text, trim the picture</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>放弃修改</source>
        <translation>Discard the changes</translation>
    </message>
    <message>
        <source>确认</source>
        <translation>Apply</translation>
    </message>
    <message>
        <source>把画面发送到屏幕</source>
        <translation>Send this to the screen</translation>
    </message>
    <message>
        <source>最小化</source>
        <translation>Minimise</translation>
    </message>
    <message>
        <source>退出</source>
        <translation>Exit</translation>
    </message>
    <message>
        <source>Kivo Screen</source>
        <translation>Kivo Screen</translation>
    </message>
    <message>
        <source>退出软件PC端屏幕内容显示信息将不准，
确定退出？</source>
        <translation>The values on the screen will no longer be current.</translation>
    </message>
    <message>
        <source>五项</source>
        <translation>5 values</translation>
    </message>
    <message>
        <source>一项</source>
        <translation>1 value</translation>
    </message>
    <message>
        <source>最多五项</source>
        <translation>Up to five items</translation>
    </message>
    <message>
        <source>只显示一项</source>
        <translation>One item only</translation>
    </message>
    <message>
        <source>日期：大</source>
        <translation>Date: large</translation>
    </message>
    <message>
        <source>日期：小</source>
        <translation>Date: small</translation>
    </message>
    <message>
        <source>无法打开此图片。</source>
        <translation>This picture cannot be opened.</translation>
    </message>
    <message>
        <source>打开图片</source>
        <translation>Open picture</translation>
    </message>
    <message>
        <source>是否删除此图片？</source>
        <translation>It leaves this list; the file stays where it is.</translation>
    </message>
    <message>
        <source>默认图片不能删除。</source>
        <translation>Built-in pictures cannot be deleted.</translation>
    </message>
    <message>
        <source>默认</source>
        <translation>Cards</translation>
    </message>
    <message>
        <source>场景</source>
        <translation>Scene</translation>
    </message>
    <message>
        <source>功耗表</source>
        <translation>Power dial</translation>
    </message>
    <message>
        <source>时钟</source>
        <translation>Clock</translation>
    </message>
    <message>
        <source>副屏设置</source>
        <translation>Kivo Screen settings</translation>
    </message>
    <message>
        <source>显示窗口</source>
        <translation>Show window</translation>
    </message>
    <message>
        <source>退出程序</source>
        <translation>Exit</translation>
    </message>
    <message>
        <source>屏幕已就绪。点击此图标可打开设置窗口。</source>
        <translation>The screen is ready. Click this icon to open the settings window.</translation>
    </message>
    <message>
        <source>屏幕尚未响应。点击此图标可打开设置窗口。</source>
        <translation>No screen answers yet. Click this icon to open the settings window.</translation>
    </message>
    <message>
        <source>图片太多，无法再添加。</source>
        <translation>There are too many pictures to add another one.</translation>
    </message>
    <message>
        <source>登录时启动</source>
        <translation>Start at login</translation>
    </message>
    <message>
        <source>无法更改登录时启动的设置。</source>
        <translation>The start at login could not be changed.</translation>
    </message>
    <message>
        <source>CPU温度，点击读取系统温区</source>
        <translation>CPU temperature; click to read the system’s thermal zone</translation>
    </message>
    <message>
        <source>软件屏幕</source>
        <translation>Software panel</translation>
    </message>
    <message>
        <source>已连接</source>
        <translation>Connected</translation>
    </message>
    <message>
        <source>没有屏幕，插入后发送</source>
        <translation>No screen; the picture waits for it</translation>
    </message>
    <message>
        <source>没有屏幕</source>
        <translation>No screen</translation>
    </message>
    <message>
        <source>没有权限打开屏幕</source>
        <translation>No permission to open the screen</translation>
    </message>
    <message>
        <source>屏幕不接收，可能被其他程序占用</source>
        <translation>Screen busy; another program may be using it</translation>
    </message>
    <message>
        <source>正在发送…</source>
        <translation>Sending…</translation>
    </message>
    <message>
        <source>%1 已发送</source>
        <translation>Sent at %1</translation>
    </message>
    <message>
        <source>正在重试…</source>
        <translation>Trying again…</translation>
    </message>
    <message>
        <source>复制两条命令，在终端中运行后即可打开屏幕</source>
        <translation>Copies two commands for a terminal that give you the right to open the screen</translation>
    </message>
    <message>
        <source>设置未能保存</source>
        <translation>Settings could not be saved</translation>
    </message>
    <message>
        <source>已复制</source>
        <translation>Copied</translation>
    </message>
    <message>
        <source>复制命令</source>
        <translation>Copy commands</translation>
    </message>
    <message>
        <source>设置已换成默认值</source>
        <translation>Settings were replaced by the defaults</translation>
    </message>
    <message>
        <source>恢复我的设置</source>
        <translation>Restore my settings</translation>
    </message>
    <message>
        <source>保留现在的</source>
        <translation>Keep these</translation>
    </message>
    <message>
        <source>保存报告…</source>
        <translation>Save report…</translation>
    </message>
    <message>
        <source>保存支持报告</source>
        <translation>Save report for support</translation>
    </message>
    <message>
        <source>文本文件 (*.txt)</source>
        <translation>Text files (*.txt)</translation>
    </message>
    <message>
        <source>报告已保存到 %1。</source>
        <translation>The report was saved to %1.</translation>
    </message>
    <message>
        <source>无法保存报告：%1</source>
        <translation>The report could not be saved: %1</translation>
    </message>
    <message>
        <source>传感器…</source>
        <translation>Sensors…</translation>
    </message>
    <message>
        <source>传感器</source>
        <translation>Sensors</translation>
    </message>
    <message>
        <source>操作系统</source>
        <translation>The system</translation>
    </message>
    <message>
        <source>由温度推算</source>
        <translation>Worked out from the temperature</translation>
    </message>
    <message>
        <source>尚未读取</source>
        <translation>Not read yet</translation>
    </message>
    <message>
        <source>没有可用的传感器</source>
        <translation>No sensor that can be read</translation>
    </message>
    <message>
        <source>没有读取权限</source>
        <translation>No permission to read it</translation>
    </message>
    <message>
        <source>未运行</source>
        <translation>Not running</translation>
    </message>
    <message>
        <source>没有响应</source>
        <translation>No answer</translation>
    </message>
    <message>
        <source>读数不可信</source>
        <translation>Tells what cannot be</translation>
    </message>
    <message>
        <source>%1：%2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1（十分钟没有变化）</source>
        <translation>%1 (unchanged for ten minutes)</translation>
    </message>
    <message>
        <source>内核能耗计数器</source>
        <translation>The kernel&apos;s energy counters</translation>
    </message>
    <message>
        <source>处理器能耗驱动</source>
        <translation>The processor&apos;s energy driver</translation>
    </message>
    <message>
        <source>内核硬件监控</source>
        <translation>The kernel&apos;s hardware monitor</translation>
    </message>
    <message>
        <source>处理器温区</source>
        <translation>The processor&apos;s thermal zone</translation>
    </message>
    <message>
        <source>Windows 能耗计数器</source>
        <translation>Windows&apos; energy counters</translation>
    </message>
    <message>
        <source>Windows 能耗表</source>
        <translation>Windows&apos; energy meter</translation>
    </message>
    <message>
        <source>主板温区</source>
        <translation>The board&apos;s thermal zone</translation>
    </message>
    <message>
        <source>此内核没有该处理器的能耗计数器；较新的内核或 zenergy 模块可能有</source>
        <translation>This kernel knows no energy counter of this processor; a newer one, or the zenergy module, may</translation>
    </message>
    <message>
        <source>加载传感器模块：sudo modprobe coretemp（AMD：k10temp）</source>
        <translation>Load the sensor&apos;s module: sudo modprobe coretemp (AMD: k10temp)</translation>
    </message>
    <message>
        <source>加载主板的传感器模块，例如 nct6775</source>
        <translation>Load the module of the board&apos;s sensors, such as nct6775</translation>
    </message>
    <message>
        <source>运行 HWiNFO 并打开 “Report value in Gadget”，或打开 LibreHardwareMonitor 的网络服务</source>
        <translation>Run HWiNFO with “Report value in Gadget”, or LibreHardwareMonitor with its web server on</translation>
    </message>
    <message>
        <source>系统温区</source>
        <translation>The system&apos;s thermal zone</translation>
    </message>
    <message>
        <source>正在运行，但没有提供读数</source>
        <translation>Runs, but hands nothing on</translation>
    </message>
    <message>
        <source>主板传感器</source>
        <translation>A sensor of the board</translation>
    </message>
    <message>
        <source>授予读取权限：见 %1 开头的说明</source>
        <translation>Permission to read it: see the top of %1</translation>
    </message>
    <message>
        <source>滚轮缩放，Esc 退出修剪</source>
        <translation>Wheel to zoom, Esc to leave</translation>
    </message>
    <message>
        <source>按回车结束输入</source>
        <translation>Press Enter to finish</translation>
    </message>
    <message>
        <source>拖动可交换位置，双击可输入文字</source>
        <translation>Drag to swap, double-click to type</translation>
    </message>
    <message>
        <source>双击可输入文字</source>
        <translation>Double-click to type</translation>
    </message>
    <message>
        <source>文字太长，屏幕上显示不全</source>
        <translation>The text is too long: its end is not shown</translation>
    </message>
    <message>
        <source>五个位置已满：先取消一项，再勾选此项</source>
        <translation>All five places are taken: untick one, then tick this again</translation>
    </message>
    <message>
        <source>找不到图片“%1”，暂用默认图片</source>
        <translation>&quot;%1&quot; is missing; the default picture stands in</translation>
    </message>
    <message>
        <source>图片“%1”没有响应，暂用默认图片</source>
        <translation>&quot;%1&quot; does not answer; the default picture stands in</translation>
    </message>
    <message>
        <source>无法打开图片“%1”，暂用默认图片</source>
        <translation>&quot;%1&quot; cannot be opened; the default picture stands in</translation>
    </message>
    <message>
        <source>温馨提示</source>
        <comment>before the program ends</comment>
        <translation>Exit Kivo Screen?</translation>
    </message>
    <message>
        <source>确定</source>
        <comment>ends the program</comment>
        <translation>Exit</translation>
    </message>
    <message>
        <source>显示设计</source>
        <comment>over the values</comment>
        <translation>Values</translation>
    </message>
    <message>
        <source>显示设计</source>
        <comment>over the themes</comment>
        <translation>Theme</translation>
    </message>
    <message>
        <source>温馨提示</source>
        <comment>before a picture is deleted</comment>
        <translation>Delete picture?</translation>
    </message>
    <message>
        <source>确定</source>
        <comment>deletes the picture</comment>
        <translation>Delete</translation>
    </message>
    <message>
        <source>%1 瓦</source>
        <translation>%1 W</translation>
    </message>
    <message>
        <source>%1 转/分</source>
        <translation>%1 rpm</translation>
    </message>
    <message>
        <source>屏幕方向</source>
        <translation>Screen orientation</translation>
    </message>
    <message>
        <source>项目数量</source>
        <translation>Number of items</translation>
    </message>
    <message>
        <source>日期大小</source>
        <translation>Size of the date</translation>
    </message>
    <message>
        <source>选择背景图片；自己添加的图片按 F2 重命名，按 Delete 删除</source>
        <translation>Choose a background; F2 renames a picture you added, Delete removes it</translation>
    </message>
    <message>
        <source>名称太多，无法保存此名称。</source>
        <translation>There are too many names to keep this one.</translation>
    </message>
    <message>
        <source>是否删除图片“%1”？</source>
        <translation>“%1” leaves this list; its file stays where it is.</translation>
    </message>
    <message>
        <source>强调色取自图片</source>
        <translation>Accent from picture</translation>
    </message>
    <message>
        <source>图标和刻度使用背景图片的颜色</source>
        <translation>Icons and ticks take their colour from the background picture</translation>
    </message>
    <message>
        <source>变暗</source>
        <translation>Dim</translation>
    </message>
    <message>
        <source>让背景图片变暗</source>
        <translation>Darkens the background picture</translation>
    </message>
    <message>
        <source>模糊</source>
        <translation>Blur</translation>
    </message>
    <message>
        <source>让背景图片模糊</source>
        <translation>Blurs the background picture</translation>
    </message>
    <message>
        <source>布局文件</source>
        <translation>Layout files</translation>
    </message>
    <message>
        <source>此文件不是布局文件，或已损坏。</source>
        <translation>This file holds no layout, or it is damaged.</translation>
    </message>
    <message>
        <source>此布局由更新版本的程序创建。</source>
        <translation>This layout was made by a newer version of the program.</translation>
    </message>
    <message>
        <source>此布局中的图片无法显示。</source>
        <translation>The picture in this layout cannot be shown.</translation>
    </message>
    <message>
        <source>背景图片无法打开，布局未导出。</source>
        <translation>The background picture cannot be opened, so the layout is not exported.</translation>
    </message>
    <message>
        <source>无法保存此布局。</source>
        <translation>This layout cannot be saved.</translation>
    </message>
    <message>
        <source>无法读取此文件。</source>
        <translation>This file cannot be read.</translation>
    </message>
    <message>
        <source>导入布局</source>
        <translation>Import a layout</translation>
    </message>
    <message>
        <source>导出布局</source>
        <translation>Export this layout</translation>
    </message>
    <message>
        <source>锁定时</source>
        <translation>When locked</translation>
    </message>
    <message>
        <source>睡眠时</source>
        <translation>While asleep</translation>
    </message>
    <message>
        <source>屏幕保护时</source>
        <translation>With the screen saver</translation>
    </message>
    <message>
        <source>退出程序后</source>
        <translation>After exit</translation>
    </message>
    <message>
        <source>照常</source>
        <comment>the screen at night</comment>
        <translation>As usual</translation>
    </message>
    <message>
        <source>调暗</source>
        <comment>the screen at night</comment>
        <translation>Dimmed</translation>
    </message>
    <message>
        <source>全黑</source>
        <comment>the screen at night</comment>
        <translation>Black</translation>
    </message>
    <message>
        <source>自动熄屏</source>
        <translation>Darken the screen</translation>
    </message>
    <message>
        <source>夜间</source>
        <translation>At night</translation>
    </message>
    <message>
        <source>夜间时段</source>
        <translation>Night</translation>
    </message>
    <message>
        <source>从</source>
        <comment>the night begins</comment>
        <translation>From</translation>
    </message>
    <message>
        <source>到</source>
        <comment>the night ends</comment>
        <translation>To</translation>
    </message>
    <message>
        <source>屏幕已熄灭：程序退出</source>
        <translation>Screen is dark: exit</translation>
    </message>
    <message>
        <source>屏幕已熄灭：系统睡眠</source>
        <translation>Screen is dark: asleep</translation>
    </message>
    <message>
        <source>屏幕已熄灭：已锁定</source>
        <translation>Screen is dark: locked</translation>
    </message>
    <message>
        <source>屏幕已熄灭：屏幕保护</source>
        <translation>Screen is dark: screen saver</translation>
    </message>
    <message>
        <source>屏幕已熄灭：命令要求</source>
        <translation>Screen is dark: on request</translation>
    </message>
    <message>
        <source>屏幕已熄灭：夜间</source>
        <translation>Screen is dark: night</translation>
    </message>
    <message>
        <source>屏幕已调暗：夜间</source>
        <translation>Screen is dimmed: night</translation>
    </message>
</context>
<context>
    <name>PreviewItem</name>
    <message>
        <source>左上</source>
        <translation>Top left</translation>
    </message>
    <message>
        <source>左下</source>
        <translation>Bottom left</translation>
    </message>
    <message>
        <source>中央</source>
        <translation>Centre</translation>
    </message>
    <message>
        <source>右下</source>
        <translation>Bottom right</translation>
    </message>
    <message>
        <source>右上</source>
        <translation>Top right</translation>
    </message>
    <message>
        <source>上行</source>
        <translation>Upper row</translation>
    </message>
    <message>
        <source>中行</source>
        <translation>Middle row</translation>
    </message>
    <message>
        <source>下行</source>
        <translation>Lower row</translation>
    </message>
    <message>
        <source>空位</source>
        <translation>Empty place</translation>
    </message>
</context>
<context>
    <name>ZoomWidget</name>
    <message>
        <source>CPU温度</source>
        <translation>CPU Temp</translation>
    </message>
    <message>
        <source>CPU使用率</source>
        <translation>CPU Load</translation>
    </message>
    <message>
        <source>内存使用率</source>
        <translation>Memory</translation>
    </message>
    <message>
        <source>时间</source>
        <translation>Time</translation>
    </message>
    <message>
        <source>功耗</source>
        <translation>Power</translation>
    </message>
    <message>
        <source>日期</source>
        <translation>Date</translation>
    </message>
    <message>
        <source>风扇转速</source>
        <translation>Fan</translation>
    </message>
    <message>
        <source>其他</source>
        <translation>Other</translation>
    </message>
    <message>
        <source>屏幕预览</source>
        <translation>Screen preview</translation>
    </message>
    <message>
        <source>拖动边框修剪图片，滚轮缩放
方向键移动，加减键缩放，Esc 退出</source>
        <translation>Drag the frame to trim, turn the wheel to zoom
Arrow keys move it, plus and minus zoom, Esc leaves</translation>
    </message>
    <message>
        <source>拖动可交换位置，双击可输入文字
方向键选择，空格键拿起和放下，回车键输入</source>
        <translation>Drag to swap places, double-click to type
Arrow keys choose, Space picks up and puts down, Enter types</translation>
    </message>
    <message>
        <source>双击进行输入</source>
        <translation>Type here</translation>
    </message>
    <message>
        <source>自由文字</source>
        <translation>Free text</translation>
    </message>
    <message>
        <source>双击可输入文字，文字可拖动
回车键输入，翻页键移动文字</source>
        <translation>Double-click to type text, drag to move it
Enter types, Page Up and Page Down move the text</translation>
    </message>
    <message>
        <source>剪切</source>
        <translation>Cut</translation>
    </message>
    <message>
        <source>复制</source>
        <translation>Copy</translation>
    </message>
    <message>
        <source>粘贴</source>
        <translation>Paste</translation>
    </message>
    <message>
        <source>全选</source>
        <translation>Select all</translation>
    </message>
</context>
<context>
    <name>kivo::ColorBar</name>
    <message>
        <source>文字颜色</source>
        <translation>Text colour</translation>
    </message>
    <message>
        <source>当前颜色</source>
        <translation>The colour in use</translation>
    </message>
</context>
<context>
    <name>kivo::EditBar</name>
    <message>
        <source>大</source>
        <translation>Large</translation>
    </message>
    <message>
        <source>中</source>
        <translation>Medium</translation>
    </message>
    <message>
        <source>小</source>
        <translation>Small</translation>
    </message>
    <message>
        <source>文字大小</source>
        <translation>Text size</translation>
    </message>
    <message>
        <source>文字颜色</source>
        <translation>Text colour</translation>
    </message>
    <message>
        <source>修剪</source>
        <translation>Trim</translation>
    </message>
    <message>
        <source>选取图片的显示区域</source>
        <translation>Choose the part of the picture to show</translation>
    </message>
    <message>
        <source>返回</source>
        <translation>Undo</translation>
    </message>
    <message>
        <source>撤销上一步</source>
        <translation>Undo the last step</translation>
    </message>
    <message>
        <source>重做</source>
        <translation>Redo</translation>
    </message>
    <message>
        <source>恢复撤销的步骤</source>
        <translation>Redo the step that was undone</translation>
    </message>
</context>
<context>
    <name>kivo::ExitMessageBox</name>
    <message>
        <source>确定</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>温馨提示</source>
        <translation>Please note</translation>
    </message>
</context>
<context>
    <name>kivo::NimbProcessDialog</name>
    <message>
        <source>正在更新屏幕</source>
        <translation>Updating the screen</translation>
    </message>
</context>
<context>
    <name>kivo::PictureList</name>
    <message>
        <source>选择图片文件夹</source>
        <translation>Add picture</translation>
    </message>
    <message>
        <source>默认图片</source>
        <translation>Built-in</translation>
    </message>
    <message>
        <source>背景图片</source>
        <translation>Background pictures</translation>
    </message>
    <message>
        <source>All Files(*)</source>
        <translation>All files (*)</translation>
    </message>
    <message>
        <source>找不到此图片</source>
        <translation>This picture is missing</translation>
    </message>
    <message>
        <source>此图片没有响应</source>
        <translation>This picture does not answer</translation>
    </message>
    <message>
        <source>无法打开此图片</source>
        <translation>This picture cannot be opened</translation>
    </message>
    <message>
        <source>重命名</source>
        <translation>Rename</translation>
    </message>
    <message>
        <source>删除</source>
        <translation>Delete</translation>
    </message>
</context>
<context>
    <name>kivo::PictureNameEdit</name>
    <message>
        <source>图片名称</source>
        <translation>Picture name</translation>
    </message>
</context>
<context>
    <name>kivo::VirtualScreenWindow</name>
    <message>
        <source>%1 报告/秒   %2 字节/秒</source>
        <translation>%1 reports/s   %2 bytes/s</translation>
    </message>
    <message>
        <source>未连接</source>
        <translation>Unplugged</translation>
    </message>
    <message>
        <source>拔出</source>
        <translation>Unplug</translation>
    </message>
    <message>
        <source>插入</source>
        <translation>Plug in</translation>
    </message>
    <message>
        <source>虚拟屏幕</source>
        <translation>Virtual screen</translation>
    </message>
</context>
</TS>
