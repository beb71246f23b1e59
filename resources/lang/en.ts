<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="zh_CN">
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
